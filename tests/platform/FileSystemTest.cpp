#include "effect/platform/Platform.h"
#include "tests/platform/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace kovalune::test {
using namespace platform;
namespace {

namespace fs = std::filesystem;

TEST(CreateFolders, MakesAllThatAreMissing) {
    const TemporaryFolder folder;
    EXPECT_TRUE(createFolders(folder.file("a/b/c").c_str()));
    EXPECT_TRUE(createFolders(folder.file("a/b/c").c_str()));
    EXPECT_TRUE(createFolders(folder.file("a/d/").c_str()));
    for (const char* name : {"a", "a/b", "a/b/c", "a/d"}) {
        EXPECT_TRUE(fs::is_directory(folder.file(name))) << name;
    }
    EXPECT_EQ(folder.allEntries(), 4);
}

TEST(CreateFolders, LeavesWhatLiesInThemAlone) {
    const TemporaryFolder folder;
    ASSERT_TRUE(createFolders(folder.file("a/b").c_str()));
    folder.write("a/file", "x");
    folder.write("a/b/file", "y");
    EXPECT_TRUE(createFolders(folder.file("a").c_str()));
    EXPECT_TRUE(createFolders(folder.file("a/b").c_str()));
    EXPECT_EQ(contentOf(folder.file("a/file")), "x");
    EXPECT_EQ(contentOf(folder.file("a/b/file")), "y");
}

TEST(CreateFolders, FailsWhereTheFolderIsNotThereAfterwards) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    EXPECT_FALSE(createFolders(folder.file("file").c_str()));
    EXPECT_FALSE(createFolders(folder.file("file/below").c_str()));
    EXPECT_FALSE(createFolders(folder.file("file/below/that").c_str()));
    EXPECT_FALSE(createFolders(folder.file(std::string(300, 'x')).c_str()));
    EXPECT_FALSE(createFolders(""));
    EXPECT_FALSE(createFolders(nullptr));
    EXPECT_EQ(folder.allEntries(), 1);
    EXPECT_EQ(contentOf(folder.file("file")), "x");
}

TEST(Names, TellWhetherAFolderOrAnythingIsThere) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "x");
    EXPECT_TRUE(folderExists(folder.path().c_str()));
    EXPECT_TRUE(nameIsTaken(folder.path().c_str()));
    EXPECT_FALSE(folderExists(file.c_str()));
    EXPECT_TRUE(nameIsTaken(file.c_str()));
    for (const char* name : {"none", "none/below", "file/below"}) {
        EXPECT_FALSE(folderExists(folder.file(name).c_str()));
        EXPECT_FALSE(nameIsTaken(folder.file(name).c_str()));
    }
    EXPECT_FALSE(folderExists(nullptr));
    EXPECT_FALSE(nameIsTaken(nullptr));
}

TEST(DeleteFile, TellsWhatBecameOfIt) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "x");
    EXPECT_EQ(deleteFile(folder.file("file/below").c_str()), Deletion::kMissing);
    EXPECT_EQ(deleteFile(folder.file("none/below").c_str()), Deletion::kMissing);
    EXPECT_EQ(deleteFile(file.c_str()), Deletion::kDone);
    EXPECT_EQ(deleteFile(file.c_str()), Deletion::kMissing);
    EXPECT_EQ(deleteFile(folder.path().c_str()), Deletion::kFailed);
    EXPECT_EQ(deleteFile(""), Deletion::kMissing);
    EXPECT_EQ(deleteFile(nullptr), Deletion::kMissing);
    EXPECT_TRUE(fs::is_directory(folder.path()));
}

TEST(RemoveFolder, TakesEmptyOnesAlone) {
    const TemporaryFolder folder;
    fs::create_directories(folder.file("a/b"));
    folder.write("file", "x");
    EXPECT_FALSE(removeFolder(folder.file("a").c_str()));
    EXPECT_TRUE(removeFolder(folder.file("a/b").c_str()));
    EXPECT_TRUE(removeFolder(folder.file("a").c_str()));
    EXPECT_FALSE(removeFolder(folder.file("a").c_str()));
    EXPECT_FALSE(removeFolder(folder.file("none/below").c_str()));
    EXPECT_FALSE(removeFolder(folder.file("file").c_str()));
    EXPECT_FALSE(removeFolder(""));
    EXPECT_FALSE(removeFolder(nullptr));
    EXPECT_EQ(contentOf(folder.file("file")), "x");
}

TEST(RemoveFolder, LeavesAFolderAloneThatAFileLiesIn) {
    const TemporaryFolder folder;
    fs::create_directories(folder.file("a"));
    folder.write("a/file", "x");
    EXPECT_FALSE(removeFolder(folder.file("a").c_str()));
    EXPECT_EQ(contentOf(folder.file("a/file")), "x");
}

} // namespace
} // namespace kovalune::test
