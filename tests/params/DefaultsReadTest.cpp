// What registration makes of a defaults file.

#include "tests/params/ExpectedTable.h"
#include "tests/params/RegisteredTable.h"
#include "tests/platform/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
namespace {

/// A host whose parameters are registered with a defaults file of this content.
class HostWithDefaults : public StubHost {
public:
    explicit HostWithDefaults(const std::string& content, const char* section = "Version=1.0")
        : path_(folder_.write("Kovalune.ini", content)) {
        EXPECT_EQ(registerTable(*this, path_.c_str(), section), 0);
    }

    const PF_ParamDefUnion& value(const std::string& label) const {
        return params.at(static_cast<std::size_t>(expectedParam(label).index)).u;
    }

private:
    const TemporaryFolder folder_;
    const std::string path_;
};

TEST(DefaultsRead, TakesAValueOfEachKind) {
    const HostWithDefaults host("[Version=1.0]\r\n"
                                "View=4\r\n"
                                "Blur Amount=12.250000\r\n"
                                "Blur Repeat Num=9\r\n"
                                "Enable 2=1\r\n"
                                "1 : Enable Process=0\r\n"
                                "3 : Boundary Bias=0.500000\r\n");
    EXPECT_EQ(host.value("View").pd.value, 4);
    EXPECT_EQ(host.value("View").pd.dephault, 4);
    EXPECT_EQ(host.value("Blur Amount").fs_d.value, 12.25);
    EXPECT_EQ(host.value("Blur Amount").fs_d.dephault, 12.25F);
    EXPECT_EQ(host.value("Blur Repeat Num").sd.value, 9);
    EXPECT_EQ(host.value("Blur Repeat Num").sd.dephault, 9);
    EXPECT_EQ(host.value("Enable 2").bd.value, 1);
    EXPECT_EQ(host.value("Enable 2").bd.dephault, 1);
    EXPECT_EQ(host.value("1 : Enable Process").bd.value, 0);
    EXPECT_EQ(host.value("1 : Enable Process").bd.dephault, 0);
    EXPECT_EQ(host.value("3 : Boundary Bias").fs_d.value, 0.5);
}

TEST(DefaultsRead, KeepsTheTablesDefaultForAMissingKey) {
    const HostWithDefaults host("[Version=1.0]\r\nView=4\r\n");
    EXPECT_EQ(host.value("Blur Amount").fs_d.value, 10.0);
    EXPECT_EQ(host.value("Blur Repeat Num").sd.value, 5);
    EXPECT_EQ(host.value("Enable 1").bd.value, 1);
    EXPECT_EQ(host.value("Color 1").cd.value.green, 180);
}

TEST(DefaultsRead, HandsNumbersOutsideTheLimitsOn) {
    const HostWithDefaults host("[Version=1.0]\r\n"
                                "Blur Repeat Num=-77\r\n"
                                "2 : Blur Repeat Num=2147483647\r\n"
                                "Blur Amount=-5000.5\r\n"
                                "Enable 1=7\r\n"
                                "View=2\r\n");
    EXPECT_EQ(host.value("Blur Repeat Num").sd.value, -77);
    EXPECT_EQ(host.value("2 : Blur Repeat Num").sd.dephault, 2147483647);
    EXPECT_EQ(host.value("Blur Amount").fs_d.value, -5000.5);
    EXPECT_EQ(host.value("Enable 1").bd.value, 7);
    EXPECT_EQ(host.value("View").pd.value, 2);
    EXPECT_EQ(host.value("Blur Repeat Num").sd.valid_min, 1);
}

TEST(DefaultsRead, MakesZeroOfAMalformedFloat) {
    const HostWithDefaults host("[Version=1.0]\r\n"
                                "Blur Amount=abc\r\n"
                                "1 : Boundary Blur=7.5abc\r\n"
                                "2 : Boundary Blur=7,5\r\n"
                                "3 : Boundary Blur=\r\n");
    EXPECT_EQ(host.value("Blur Amount").fs_d.value, 0.0);
    EXPECT_EQ(host.value("Blur Amount").fs_d.dephault, 0.0F);
    EXPECT_EQ(host.value("1 : Boundary Blur").fs_d.value, 7.5);
    EXPECT_EQ(host.value("2 : Boundary Blur").fs_d.value, 7.0);
    EXPECT_EQ(host.value("3 : Boundary Blur").fs_d.value, 0.0);
}

TEST(DefaultsRead, CutsAFloatsTextBeforeItIsConverted) {
    const HostWithDefaults host("[Version=1.0]\r\n"
                                "Blur Amount=" +
                                std::string(127, '0') + "9\r\n");
    EXPECT_EQ(host.value("Blur Amount").fs_d.value, 0.0);
}

TEST(DefaultsRead, TakesAColourFromThreeKeys) {
    const HostWithDefaults host("[Version=1.0]\r\n"
                                "Color 2.r=10\r\n"
                                "Color 2.g=20\r\n"
                                "Color 2.b=30\r\n"
                                "Color 2.a=40\r\n"
                                "4 : Color.g=99\r\n");
    for (const PF_Pixel& color : {host.value("Color 2").cd.value, host.value("Color 2").cd.dephault}) {
        EXPECT_EQ(color.red, 10);
        EXPECT_EQ(color.green, 20);
        EXPECT_EQ(color.blue, 30);
        EXPECT_EQ(color.alpha, 255);
    }
    EXPECT_EQ(host.value("4 : Color").cd.value.red, 3);
    EXPECT_EQ(host.value("4 : Color").cd.value.green, 99);
    EXPECT_EQ(host.value("4 : Color").cd.value.blue, 245);
}

TEST(DefaultsRead, LooksInItsOwnSectionAlone) {
    const std::string content = "[Version=1.1]\r\nView=3\r\n[Other]\r\nView=5\r\n";
    EXPECT_EQ(HostWithDefaults(content).value("View").pd.value, 1);
    EXPECT_EQ(HostWithDefaults(content, "Other").value("View").pd.value, 5);
}

TEST(DefaultsRead, KeepsTheTablesDefaultsWithoutAUsableFile) {
    const TemporaryFolder folder;
    for (const std::string& path : {folder.file("missing"), folder.path(), std::string()}) {
        StubHost host;
        ASSERT_EQ(registerTable(host, path.c_str()), 0);
        EXPECT_EQ(host.params.at(3).u.fs_d.value, 10.0) << path;
        EXPECT_EQ(host.params.at(4).u.sd.value, 5) << path;
    }
}

TEST(DefaultsRead, SurvivesADamagedFile) {
    std::string noise = "[Version=1.0";
    for (int i = 0; i < 5000; ++i) {
        noise.push_back(static_cast<char>(i * 37 % 256));
    }
    const HostWithDefaults host(noise);
    EXPECT_EQ(host.value("Blur Amount").fs_d.value, 10.0);
    EXPECT_EQ(host.value("View").pd.value, 1);
}

TEST(DefaultsRead, TakesAReadOnlyFile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("Kovalune.ini", "[Version=1.0]\r\nView=4\r\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    StubHost host;
    ASSERT_EQ(registerTable(host, path.c_str()), 0);
    EXPECT_EQ(host.params.at(1).u.pd.value, 4);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

TEST(DefaultsRead, IgnoresTheFileOnAnOldHost) {
    const TemporaryFolder folder;
    const std::string path = folder.write("Kovalune.ini", "[Version=1.0]\r\nView=4\r\nBlur Amount=3.0\r\n"
                                                          "Color 1.r=9\r\nEnable 1=0\r\n");
    StubHost host;
    host.in.version = {12, 11};
    ASSERT_EQ(registerTable(host, path.c_str()), 0);
    EXPECT_EQ(host.params.at(1).u.pd.value, 1);
    EXPECT_EQ(host.params.at(3).u.fs_d.value, 10.0);
    EXPECT_EQ(host.params.at(6).u.bd.value, 1);
    EXPECT_EQ(host.params.at(7).u.cd.value.red, 3);
}

TEST(DefaultsRead, TakesTheFileOnEveryOtherHost) {
    const TemporaryFolder folder;
    const std::string path = folder.write("Kovalune.ini", "[Version=1.0]\r\nView=4\r\n");
    StubHost host;
    host.in.appl_id = PF_AppID_PrMr;
    host.in.version = {1, 0};
    ASSERT_EQ(registerTable(host, path.c_str()), 0);
    EXPECT_EQ(host.params.at(1).u.pd.value, 4);
}

} // namespace
} // namespace kovalune::test
