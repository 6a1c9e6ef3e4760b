// The defaults file byte for byte, as every system's profile functions write and rewrite it. The files in `defaults` were
// written down apart from this code: `table` holds the table's defaults, `odd` the values below, and of each further name
// there is a file as it was before and what either saving makes of it.

#include "tests/params/DefaultsUser.h"
#include "tests/params/ExpectedTable.h"

#include <gtest/gtest.h>
#include <iterator>
#include <limits>

namespace kovalune::test {
namespace {

constexpr double kOddNumbers[] = {-10.5,
                                  0.1 + 0.2,
                                  1e15,
                                  -1234567890.125,
                                  0.0000005,
                                  0.0000015,
                                  -0.0,
                                  1e22,
                                  123456.7890125,
                                  2.5e-7,
                                  99.9999995,
                                  1.0 / 3.0,
                                  -2.0 / 3.0,
                                  1e300,
                                  std::numeric_limits<double>::max(),
                                  std::numeric_limits<double>::denorm_min(),
                                  std::numeric_limits<double>::infinity()};
constexpr int32_t kOddIntegers[] = {INT32_MIN, INT32_MAX, -1, 0, 77, 100000};
constexpr int32_t kOddBoxes[] = {256, -1, 2, 0, INT32_MIN, INT32_MAX, 7};

PF_Pixel oddColor(std::size_t n) {
    const auto channel = [](std::size_t value) { return static_cast<A_u_char>(value); };
    return {channel(n * n), channel(n * 36), channel(255 - n), channel(128 + n)};
}

/// Takes turns with the odd values of each kind, in the table's order.
void makeOdd(StubHost& host) {
    std::size_t numbers = 0;
    std::size_t integers = 0;
    std::size_t boxes = 0;
    std::size_t colors = 0;
    for (const ExpectedParam& row : expectedTable()) {
        PF_ParamDefUnion& value = host.params.at(static_cast<std::size_t>(row.index)).u;
        switch (row.type) {
        case PF_Param_POPUP:
            value.pd.value = kOddIntegers[integers++ % std::size(kOddIntegers)];
            break;
        case PF_Param_SLIDER:
            value.sd.value = kOddIntegers[integers++ % std::size(kOddIntegers)];
            break;
        case PF_Param_CHECKBOX:
            value.bd.value = kOddBoxes[boxes++ % std::size(kOddBoxes)];
            break;
        case PF_Param_FLOAT_SLIDER:
            value.fs_d.value = kOddNumbers[numbers++ % std::size(kOddNumbers)];
            break;
        case PF_Param_COLOR:
            value.cd.value = oddColor(colors++);
            break;
        default:
            break;
        }
    }
}

class DefaultsBytes : public DefaultsUser, public testing::WithParamInterface<const char*> {
protected:
    bool saveTable() {
        StubHost host;
        EXPECT_EQ(registerTable(host, nullptr), 0);
        return saveDefaults(host.paramArray(), path_);
    }
    bool saveOdd() {
        StubHost host;
        EXPECT_EQ(registerTable(host, nullptr), 0);
        makeOdd(host);
        return saveDefaults(host.paramArray(), path_);
    }
    std::string content() const { return contentOf(path_); }
};

TEST_F(DefaultsBytes, AreTheSameForANewFile) {
    ASSERT_TRUE(makeDefaultsFolder(path_));
    EXPECT_TRUE(saveTable());
    EXPECT_EQ(content(), expectedDefaults("table.ini"));
    ASSERT_EQ(removeDefaultsFile(path_), platform::Deletion::kDone);
    ASSERT_TRUE(makeDefaultsFolder(path_));
    EXPECT_TRUE(saveOdd());
    EXPECT_EQ(content(), expectedDefaults("odd.ini"));
}

TEST_F(DefaultsBytes, AreTheSameOverAnOlderFileOfOurs) {
    ASSERT_TRUE(makeDefaultsFolder(path_));
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(saveOdd());
        EXPECT_EQ(content(), expectedDefaults("odd.ini"));
        EXPECT_TRUE(saveTable());
        EXPECT_EQ(content(), expectedDefaults("table.ini"));
    }
}

TEST_P(DefaultsBytes, AreTheSameOverAFileOfAnother) {
    const std::string name = GetParam();
    const std::string before = expectedDefaults(name + ".before.ini");
    const std::string table = expectedDefaults(name + ".table.ini");
    const std::string odd = expectedDefaults(name + ".odd.ini");
    put(before);
    EXPECT_TRUE(saveTable());
    EXPECT_EQ(content(), table);
    EXPECT_TRUE(saveOdd());
    EXPECT_EQ(content(), odd);

    put(before);
    EXPECT_TRUE(saveOdd());
    EXPECT_EQ(content(), odd);
    EXPECT_TRUE(saveTable());
    EXPECT_EQ(content(), table);
}

INSTANTIATE_TEST_SUITE_P(Files, DefaultsBytes,
                         testing::Values("between", "comments", "no-end", "letters", "mark"),
                         [](const auto& file) {
                             std::string name = file.param;
                             std::erase(name, '-');
                             return name;
                         });

/// The text of a number is cut before it is converted, and what is no finite number is none.
TEST_F(DefaultsBytes, ReadBackAsTheNumbersThatTheyTell) {
    put(expectedDefaults("odd.ini"));
    StubHost host;
    ASSERT_EQ(registerTable(host, path_), 0);
    const auto number = [&host](const char* label) {
        return host.params.at(static_cast<std::size_t>(expectedParam(label).index)).u.fs_d.value;
    };
    EXPECT_EQ(host.params.at(1).u.pd.value, INT32_MIN);
    EXPECT_EQ(host.params.at(4).u.sd.value, INT32_MAX);
    EXPECT_EQ(number("Blur Amount"), -10.5);
    EXPECT_EQ(number("Color 1 Range"), 0.3);
    EXPECT_EQ(number("Color 2 Range"), 1e15);
    EXPECT_EQ(number("Color 3 Range"), -1234567890.125);
    EXPECT_EQ(number("Color 4 Range"), 0.0);
    EXPECT_EQ(number("1 : Color Range"), 0.000002);
    EXPECT_EQ(number("1 : Boundary Bias"), 1e22);
    EXPECT_EQ(number("3 : Boundary Bias"), 1.0000000000000001e+126);
    EXPECT_EQ(number("4 : Color Range"), 1.7976931348623157e+126);
    EXPECT_EQ(number("4 : Boundary Blur"), 0.0);
    EXPECT_EQ(number("4 : Boundary Bias"), 0.0);
}

} // namespace
} // namespace kovalune::test
