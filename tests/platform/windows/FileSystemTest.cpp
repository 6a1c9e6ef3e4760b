// Attributes, drive letters, both separators and the code page, as only Windows has them.

#include "effect/platform/Platform.h"
#include "tests/platform/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace kovalune::test {
using namespace platform;
namespace {

namespace fs = std::filesystem;

TEST(WindowsDeleteFile, LeavesAReadOnlyFileAlone) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "x");
    ASSERT_NE(SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY), FALSE);
    EXPECT_EQ(deleteFile(file.c_str()), Deletion::kFailed);
    EXPECT_EQ(contentOf(file), "x");
    ASSERT_NE(SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL), FALSE);
    EXPECT_EQ(deleteFile(file.c_str()), Deletion::kDone);
}

TEST(WindowsDeleteFile, LeavesAFileAloneThatIsInUse) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "x");
    const HANDLE open = CreateFileA(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(open, INVALID_HANDLE_VALUE);
    EXPECT_EQ(deleteFile(file.c_str()), Deletion::kFailed);
    CloseHandle(open);
    EXPECT_EQ(deleteFile(file.c_str()), Deletion::kDone);
}

TEST(WindowsFileSystem, DoesNotTellLettersByTheirCase) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "x");
    EXPECT_TRUE(createFolders(folder.file("A/B").c_str()));
    EXPECT_TRUE(createFolders(folder.file("a/b/c").c_str()));
    EXPECT_EQ(folder.allEntries(), 4);
    EXPECT_TRUE(removeFolder(folder.file("a/B/C").c_str()));
    EXPECT_EQ(deleteFile(folder.file("FILE").c_str()), Deletion::kDone);
}

TEST(WindowsFileSystem, KnowsItsDrives) {
    const TemporaryFolder folder;
    ASSERT_EQ(folder.path().substr(1, 2), ":\\");
    EXPECT_TRUE(createFolders(folder.path().substr(0, 3).c_str()));
    EXPECT_FALSE(removeFolder(folder.path().substr(0, 3).c_str()));
    EXPECT_FALSE(createFolders("?:\\folder"));
    const std::string unknown = "0:\\folder\\below";
    EXPECT_FALSE(createFolders(unknown.c_str()));
    EXPECT_NE(deleteFile(unknown.c_str()), Deletion::kDone);
    EXPECT_FALSE(removeFolder(unknown.c_str()));
}

/// No path of the effect has one, but tools may hand in any.
TEST(WindowsFileSystem, TakesSlashesWhereItCan) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "x");
    const std::string made = folder.path() + "/a/b";
    const bool answer = createFolders(made.c_str());
    EXPECT_EQ(answer, fs::is_directory(folder.file("a/b")));
    fs::create_directories(folder.file("a/b"));
    EXPECT_TRUE(createFolders(made.c_str()));
    EXPECT_TRUE(removeFolder(made.c_str()));
    EXPECT_EQ(deleteFile((folder.path() + "/file").c_str()), Deletion::kDone);
    EXPECT_EQ(folder.allEntries(), 1);
}

/// Names whose second bytes are those of '\\', '|' and letters in both cases. The narrow calls read them in the active
/// code page, so they are names of three characters where that is Japanese; the wide calls tell.
TEST(WindowsFileSystem, TakesNamesInTheActiveCodePage) {
    if (GetACP() != 932) {
        GTEST_SKIP() << "the active code page is " << GetACP() << ", not the Japanese one";
    }
    const TemporaryFolder folder;
    const std::string name = "\x83\x5c\x81\x62\x83\x41";
    const std::wstring wideName = L"\u30bd\uff5c\u30a2";
    const std::string path = folder.file(name);
    const fs::path wide = fs::path(folder.path()) / wideName;
    EXPECT_TRUE(createFolders(folder.file(name + "/" + name).c_str()));
    EXPECT_TRUE(fs::is_directory(wide / wideName));
    EXPECT_EQ(folder.allEntries(), 2);
    EXPECT_FALSE(removeFolder(path.c_str()));
    EXPECT_TRUE(removeFolder(folder.file(name + "/" + name).c_str()));

    const std::string file = folder.file(name + "/" + name + ".ini");
    EXPECT_TRUE(writeProfileString("s", "a", "7", file.c_str()));
    EXPECT_EQ(contentOf(wide / (wideName + L".ini")), "[s]\r\na=7\r\n");
    EXPECT_EQ(profileInt("s", "a", 5, file.c_str()), 7);
    EXPECT_EQ(deleteFile(file.c_str()), Deletion::kDone);
    EXPECT_TRUE(removeFolder(path.c_str()));
    EXPECT_EQ(folder.allEntries(), 0);
}

} // namespace
} // namespace kovalune::test
