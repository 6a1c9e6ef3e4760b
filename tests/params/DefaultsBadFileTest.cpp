// Defaults files that are damaged or no such files at all.

#include "tests/params/RegisteredTable.h"
#include "tests/platform/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <ostream>
#include <string_view>

namespace kovalune::test {
namespace {

struct BadFile {
    const char* name;
    std::string content;
    A_long view; ///< that is read from it; 0 where systems differ
};

std::ostream& operator<<(std::ostream& stream, const BadFile& file) {
    return stream << file.name;
}

std::string bytesOfEveryValue() {
    std::string bytes;
    for (int i = 0; i < 20000; ++i) {
        bytes += static_cast<char>(i * 37 % 256);
    }
    return bytes;
}

std::string manySections() {
    std::string text;
    for (int i = 0; i < 8000; ++i) {
        text.append("[").append(std::to_string(i)).append("]\r\na=1\r\n");
    }
    return text;
}

std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

std::vector<BadFile> badFiles() {
    const std::string view = "[Version=1.0]\r\nView=4\r\n";
    const std::string bytes = bytesOfEveryValue();
    const std::string zeros(5000, '\0');
    const std::string name(70000, 'x');
    const std::string megabyte(std::size_t{1} << 20, 'x');
    return {{"Empty", "", 1},
            {"LineEndsAlone", std::string(5000, '\n'), 1},
            {"LinesThatEndInCr", "[Version=1.0]\rView=4\r", 0},
            {"Zeros", zeros, 1},
            {"ZerosBehind", joined({view, zeros}), 4},
            {"Binary", bytes, 1},
            {"BinaryBehind", joined({view, bytes}), 4},
            {"Megabyte", megabyte, 1},
            {"MegabyteBehind", joined({view, ";", megabyte}), 4},
            {"MegabyteBefore", joined({";", megabyte, "\r\n", view}), 0},
            {"ManySections", manySections(), 1},
            {"LongNames", joined({"[", name, "]\r\n", name, "=1\r\n", view}), 4},
            {"LongValue", joined({view, "Blur Amount=", name, "\r\n"}), 4},
            {"Mark", joined({"\xEF\xBB\xBF", view}), 0},
            {"MarkBeforeAComment", joined({"\xEF\xBB\xBF;\r\n", view}), 4},
            {"MarkOfOtherText", joined({"\xFF\xFE", view}), 0},
            {"OpenSection", "[Version=1.0\r\nView=4\r\n", 0},
            {"NoLineEnd", "[Version=1.0]\r\nView=4", 4},
            {"NoCr", "[Version=1.0]\nView=4\n", 4},
            {"Quotes", joined({view, "Blur Amount=\"\r\n"}), 4}};
}

class DefaultsOfABadFile : public testing::TestWithParam<BadFile> {};

TEST_P(DefaultsOfABadFile, AreWhatCanBeReadAndElseTheTables) {
    const TemporaryFolder folder;
    const std::string path = folder.write("Kovalune.ini", GetParam().content);
    StubHost host;
    ASSERT_EQ(registerTable(host, path.c_str()), 0);
    ASSERT_EQ(host.params.size(), 58U);
    const A_long view = host.params[1].u.pd.value;
    if (GetParam().view != 0) {
        EXPECT_EQ(view, GetParam().view);
    } else {
        EXPECT_TRUE(view == 1 || view == 4) << view;
    }
    EXPECT_EQ(host.params[4].u.sd.value, 5);
    EXPECT_EQ(host.params[7].u.cd.value.green, 180);
}

INSTANTIATE_TEST_SUITE_P(Files, DefaultsOfABadFile, testing::ValuesIn(badFiles()),
                         [](const auto& file) { return std::string(file.param.name); });

/// Remembering over such a file: either it now says what was remembered, or it is as it was.
TEST_P(DefaultsOfABadFile, TakeAValueOrStayAsTheyAre) {
    const TemporaryFolder folder;
    const std::string path = folder.write("Kovalune.ini", GetParam().content);
    builtTable().setSectionName("Version=1.0");
    BaseParam& view = *builtTable().byIndex().at(1);
    view.def.u.pd.value = 6;
    const bool saved = view.saveDefault(path.c_str());
    EXPECT_TRUE(saved || GetParam().content.size() > 1'000'000);
    if (!saved) {
        EXPECT_TRUE(contentOf(path) == GetParam().content);
        return;
    }
    StubHost host;
    ASSERT_EQ(registerTable(host, path.c_str()), 0);
    EXPECT_EQ(host.params.at(1).u.pd.value, 6);
    EXPECT_EQ(host.params.at(4).u.sd.value, 5);
}

} // namespace
} // namespace kovalune::test
