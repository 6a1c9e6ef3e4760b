// Remembering and forgetting: what is in the file, and what becomes of its folders.

#include "tests/params/DefaultsUser.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

using platform::Deletion;
namespace fs = std::filesystem;

class DefaultsStore : public DefaultsUser {};

TEST_F(DefaultsStore, WritesEveryKeyInTheTablesOrder) {
    EXPECT_TRUE(makeDefaultsFolder(path_));
    EXPECT_TRUE(save());
    EXPECT_EQ(contentOf(path_), expectedDefaults("table.ini"));
}

TEST_F(DefaultsStore, WritesTheSameFileOverAnEmptyOne) {
    put("");
    EXPECT_TRUE(save());
    EXPECT_EQ(contentOf(path_), expectedDefaults("table.ini"));
}

TEST_F(DefaultsStore, KeepsWhatIsNotItsOwn) {
    const std::string others = "\xEF\xBB\xBF; mine\r\n[Version=0.9]\r\nView=7\r\n";
    put(others);
    EXPECT_TRUE(save());
    EXPECT_EQ(contentOf(path_), others + expectedDefaults("table.ini"));
}

TEST_F(DefaultsStore, FailsWithAFolderInTheFilesPlace) {
    fs::create_directories(path());
    EXPECT_FALSE(save());
    EXPECT_TRUE(fs::is_directory(path()));
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kFailed);
    EXPECT_TRUE(fs::is_directory(path()));
}

TEST_F(DefaultsStore, FailsWithoutItsFolder) {
    EXPECT_FALSE(save());
    EXPECT_EQ(folder_.entries(), 0);
}

TEST_F(DefaultsStore, FailsForThePathThatDidNotFit) {
    EXPECT_FALSE(makeDefaultsFolder(""));
    StubHost host;
    ASSERT_EQ(registerTable(host, nullptr), 0);
    EXPECT_FALSE(saveDefaults(host.paramArray(), ""));
    EXPECT_EQ(removeDefaultsFile(""), Deletion::kMissing);
    EXPECT_TRUE(fs::is_directory(folder_.path()));
}

TEST_F(DefaultsStore, CannotMakeAFolderInAFilesPlace) {
    folder_.write("ORVEL", "a file");
    EXPECT_FALSE(makeDefaultsFolder(path_));
    EXPECT_EQ(contentOf(folder_.file("ORVEL")), "a file");
}

TEST_F(DefaultsStore, ForgetsTheFileAndItsEmptyFolders) {
    put("[Version=1.0]\r\nView=3\r\n[Version=9.0]\r\n");
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kDone);
    EXPECT_FALSE(fs::exists(maker()));
    EXPECT_TRUE(fs::is_directory(folder_.path()));
}

TEST_F(DefaultsStore, KeepsAFolderThatSomethingElseLiesIn) {
    put("");
    fs::create_directories(maker() / "Other");
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kDone);
    EXPECT_FALSE(fs::exists(product()));
    EXPECT_TRUE(fs::is_directory(maker() / "Other"));

    put("");
    folder_.write("ORVEL/Tavik/other.ini", "x");
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kDone);
    EXPECT_FALSE(fs::exists(path()));
    EXPECT_EQ(contentOf(product() / "other.ini"), "x");
}

TEST_F(DefaultsStore, RemovesEmptyFoldersWithoutAFileToo) {
    fs::create_directories(product());
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kMissing);
    EXPECT_FALSE(fs::exists(maker()));
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kMissing);
    EXPECT_TRUE(fs::is_directory(folder_.path()));
}

TEST_F(DefaultsStore, KnowsWhichKeysAreRemembered) {
    put("[Version=1.0]\r\nView=0\r\nEnable 1=1\r\nColor 1.g=1\r\nempty=\r\n[Version=2.0]\r\nEnable 2=1\r\n");
    builtTable().setSectionName("Version=1.0");
    for (const char* key : {"View", "Enable 1", "Color 1.g", "empty"}) {
        EXPECT_TRUE(isRemembered(key, path_)) << key;
    }
    for (const char* key : {"Enable 2", "Color 1.r", "Color 1", "Blur Amount"}) {
        EXPECT_FALSE(isRemembered(key, path_)) << key;
    }
    EXPECT_FALSE(isRemembered("View", "/nowhere/at/all.ini"));
}

} // namespace
} // namespace kovalune::test
