// Values on their way into the defaults file and back.

#include "effect/params/ReadOut.h"
#include "tests/params/ExpectedTable.h"
#include "tests/params/RegisteredTable.h"
#include "tests/platform/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sstream>

namespace kovalune::test {
namespace {

BaseParam& objectOf(const std::string& label) {
    return *builtTable().byIndex().at(static_cast<std::size_t>(expectedParam(label).index));
}

/// The host's values into the parameter objects, and from there into the file.
void saveAll(StubHost& host, const std::string& path) {
    builtTable().setSectionName("Version=1.0");
    GetParamFromArray getter(host.paramArray());
    ASSERT_EQ(readParameters(nullptr, getter), 0);
    for (const BaseParam* const param : builtTable().byIndex()) {
        if (param != nullptr) {
            EXPECT_TRUE(param->saveDefault(path.c_str()));
        }
    }
}

std::vector<std::string> linesOf(const std::string& path) {
    std::istringstream text(contentOf(path));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

TEST(SaveDefault, WritesEachKindInItsOwnForm) {
    const TemporaryFolder folder;
    const std::string path = folder.file("Kovalune.ini");
    builtTable().setSectionName("Version=1.0");
    objectOf("View").def.u.pd.value = 4;
    objectOf("Blur Amount").def.u.fs_d.value = 12.3456789;
    objectOf("Blur Repeat Num").def.u.sd.value = -9;
    objectOf("Enable 2").def.u.bd.value = 256;
    objectOf("Color 1").def.u.cd.value = {11, 22, 33, 44};
    for (const char* label : {"View", "Blur Amount", "Blur Repeat Num", "Enable 2", "Color 1"}) {
        EXPECT_TRUE(objectOf(label).saveDefault(path.c_str()));
    }
    EXPECT_EQ(contentOf(path), "[Version=1.0]\r\n"
                               "View=4\r\n"
                               "Blur Amount=12.345679\r\n"
                               "Blur Repeat Num=-9\r\n"
                               "Enable 2=256\r\n"
                               "Color 1.r=22\r\n"
                               "Color 1.g=33\r\n"
                               "Color 1.b=44\r\n"
                               "Color 1.a=11\r\n");
}

TEST(SaveDefault, LeavesGroupsOut) {
    const TemporaryFolder folder;
    const std::string path = folder.file("Kovalune.ini");
    builtTable().setSectionName("Version=1.0");
    EXPECT_TRUE(builtTable().findById(50)->saveDefault(path.c_str()));
    EXPECT_TRUE(builtTable().findById(51)->saveDefault(path.c_str()));
    EXPECT_EQ(folder.entries(), 0);
}

TEST(SaveDefault, WritesOneKeyForEachValue) {
    const TemporaryFolder folder;
    const std::string path = folder.file("Kovalune.ini");
    StubHost host;
    ASSERT_EQ(registerTable(host, nullptr), 0);
    saveAll(host, path);
    // 47 values, 8 of them colours with four keys each, and the section.
    EXPECT_EQ(linesOf(path).size(), 1U + 39U + 8U * 4U);
}

TEST(SaveDefault, ComesBackWithTheNextRegistration) {
    const TemporaryFolder folder;
    const std::string path = folder.file("Kovalune.ini");
    StubHost* host = new StubHost();
    ASSERT_EQ(registerTable(*host, nullptr), 0);
    int step = 0;
    for (const ExpectedParam& row : expectedTable()) {
        PF_ParamDefUnion& value = host->params[static_cast<std::size_t>(row.index)].u;
        ++step;
        if (row.type == PF_Param_FLOAT_SLIDER) {
            value.fs_d.value = step + 0.25;
        } else if (row.type == PF_Param_COLOR) {
            const auto channel = static_cast<A_u_char>(step);
            value.cd.value = {channel, static_cast<A_u_char>(channel + 60), channel, 255};
        } else if (row.fieldWidth != 0) {
            value.sd.value = 100 + step; // all of them start with the same word
        }
    }
    saveAll(*host, path);
    delete host;

    StubHost next;
    ASSERT_EQ(registerTable(next, path.c_str()), 0);
    step = 0;
    for (const ExpectedParam& row : expectedTable()) {
        SCOPED_TRACE(row.label);
        const PF_ParamDefUnion& value = next.params[static_cast<std::size_t>(row.index)].u;
        ++step;
        if (row.type == PF_Param_FLOAT_SLIDER) {
            EXPECT_EQ(value.fs_d.value, step + 0.25);
        } else if (row.type == PF_Param_COLOR) {
            EXPECT_EQ(value.cd.value.alpha, 255);
            EXPECT_EQ(value.cd.value.red, step + 60);
            EXPECT_EQ(value.cd.value.green, step);
            EXPECT_EQ(value.cd.value.blue, 255);
        } else if (row.fieldWidth != 0) {
            EXPECT_EQ(value.sd.value, 100 + step);
        }
    }
}

TEST(SaveDefault, ReplacesWhatWasThere) {
    const TemporaryFolder folder;
    const std::string path =
        folder.write("Kovalune.ini", "; mine\r\n[Other]\r\nView=7\r\n[version=1.0]\r\nVIEW=3\r\nkept=1\r\n");
    builtTable().setSectionName("Version=1.0");
    objectOf("View").def.u.pd.value = 4;
    EXPECT_TRUE(objectOf("View").saveDefault(path.c_str()));
    EXPECT_EQ(contentOf(path), "; mine\r\n[Other]\r\nView=7\r\n[version=1.0]\r\nVIEW=4\r\nkept=1\r\n");
}

TEST(SaveDefault, LosesTheValueWithoutAWordWhereItCannotBeWritten) {
    const TemporaryFolder folder;
    builtTable().setSectionName("Version=1.0");
    EXPECT_FALSE(objectOf("View").saveDefault(folder.file("no/such/folder.ini").c_str()));
    EXPECT_EQ(folder.entries(), 0);
}

} // namespace
} // namespace kovalune::test
