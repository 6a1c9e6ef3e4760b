// What the effect asks the system about the user and the process.

#include "effect/platform/Platform.h"
#include "effect/platform/windows/Module.h"
#include "tests/platform/ScopedUser.h"
#include "tests/platform/TemporaryFolder.h"

#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <windows.h>

namespace kovalune::test {
using namespace platform;
namespace {

TEST(WindowsFolders, GiveAnExistingFolderWithoutATrailingSeparator) {
    char folder[MAX_PATH];
    ASSERT_TRUE(applicationDataFolder(folder, sizeof folder));
    ASSERT_GT(std::strlen(folder), 3U);
    EXPECT_EQ(folder[1], ':');
    EXPECT_NE(folder[std::strlen(folder) - 1], kPathSeparator);
    const DWORD attributes = GetFileAttributesA(folder);
    ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
    EXPECT_NE(attributes & FILE_ATTRIBUTE_DIRECTORY, 0U);
}

TEST(WindowsFolders, LeaveAnEmptyTextInABufferThatIsTooSmall) {
    char folder[MAX_PATH];
    ASSERT_TRUE(applicationDataFolder(folder, sizeof folder));
    const std::size_t length = std::strlen(folder);
    EXPECT_TRUE(applicationDataFolder(folder, length + 1));
    EXPECT_FALSE(applicationDataFolder(folder, length));
    EXPECT_STREQ(folder, "");
    EXPECT_FALSE(applicationDataFolder(nullptr, 10));
    EXPECT_FALSE(applicationDataFolder(folder, 0));
}

/// The folder for settings, between what must stay as it was; "none" where there is none.
std::string folderIn(std::size_t size) {
    std::string buffer(1024, 'x');
    const bool found = applicationDataFolder(buffer.data(), size);
    EXPECT_EQ(buffer.substr(size), std::string(1024 - size, 'x'));
    EXPECT_TRUE(found || buffer[0] == '\0');
    return found ? buffer.c_str() : "none";
}

TEST(WindowsFolders, AreTheUsers) {
    const TemporaryFolder folder;
    const ScopedSettings settings(folder.path());
    EXPECT_EQ(folderIn(260), folder.path());
}

TEST(WindowsFolders, NeedNotBeThere) {
    const TemporaryFolder folder;
    const ScopedSettings settings(folder.file("to come"));
    EXPECT_EQ(folderIn(260), folder.file("to come"));
    EXPECT_FALSE(std::filesystem::exists(folder.file("to come")));
}

TEST(WindowsFolders, MayHaveAnyLengthThatFits) {
    const TemporaryFolder folder;
    for (const std::size_t length : {200U, 240U, 247U, 259U}) {
        const std::string path = folder.fileOfLength(length);
        ASSERT_TRUE(std::filesystem::create_directories(path)) << length;
        const ScopedSettings settings(path);
        EXPECT_EQ(folderIn(260), path);
        EXPECT_EQ(folderIn(length + 1), path);
        EXPECT_EQ(folderIn(length), "none");
        EXPECT_EQ(folderIn(1), "none");
    }
}

/// The second byte of a Japanese character may be that of a separator.
TEST(WindowsFolders, MayEndInTheByteOfASeparator) {
    const TemporaryFolder folder;
    const std::string name = GetACP() == 932 ? "\x83\x5c" : "plain";
    ASSERT_TRUE(createFolders(folder.file(name).c_str()));
    const ScopedSettings settings(folder.file(name));
    EXPECT_EQ(folderIn(260), folder.file(name));
}

TEST(WindowsFolders, LoseSeparatorsAtTheirEnd) {
    const TemporaryFolder folder;
    for (const char* tail : {"\\", "\\\\"}) {
        const ScopedSettings settings(folder.path() + tail);
        EXPECT_EQ(folderIn(260), folder.path());
    }
    const ScopedSettings root("C:\\");
    EXPECT_EQ(folderIn(260), "C:\\");
}

TEST(WindowsProcess, KnowsItsCommandLine) {
    EXPECT_NE(commandLine().find("platform_tests"), std::string::npos) << commandLine();
}

TEST(WindowsProcess, TakesTheCodePageOfTheSystemOrNone) {
    EXPECT_TRUE(activeCodePage() == 0 || activeCodePage() == GetACP()) << activeCodePage();
}

/// A program that keeps a module of its own as the load routine does.
class WindowsModule : public testing::Test {
protected:
    ~WindowsModule() override { keepModuleHandle(nullptr); }

    int kept_ = 0;
};

TEST_F(WindowsModule, IsKeptAsItWasGiven) {
    EXPECT_EQ(moduleHandle(), nullptr);
    keepModuleHandle(&kept_);
    EXPECT_EQ(moduleHandle(), &kept_);
}

TEST_F(WindowsModule, IsThatOfALoadedFile) {
    keepModuleHandle(&kept_);
    const HMODULE kernel = GetModuleHandleA("kernel32.dll");
    char path[MAX_PATH];
    ASSERT_NE(GetModuleFileNameA(kernel, path, sizeof path), 0U);
    EXPECT_EQ(moduleOfFile(path), kernel);
    EXPECT_EQ(moduleOfFile("kernel32.dll"), kernel);
    ASSERT_NE(GetModuleFileNameA(nullptr, path, sizeof path), 0U);
    EXPECT_EQ(moduleOfFile(path), GetModuleHandleA(nullptr));
}

TEST_F(WindowsModule, IsTheKeptOneWhereTheFileIsNoLoadedOne) {
    const TemporaryFolder folder;
    const std::string file = folder.write("Kovalune.aex", "no library");
    for (const bool kept : {false, true}) {
        keepModuleHandle(kept ? &kept_ : nullptr);
        void* const expected = kept ? &kept_ : nullptr;
        EXPECT_EQ(moduleOfFile(nullptr), expected);
        EXPECT_EQ(moduleOfFile(""), expected);
        for (const std::string& path :
             {file, folder.path(), folder.file("missing.aex"), std::string("C:\\"), std::string("?:\\*"),
              std::string("\x83"), folder.fileOfLength(259), folder.fileOfLength(260),
              folder.fileOfLength(1000), folder.fileOfLength(32767), folder.fileOfLength(100000)}) {
            EXPECT_EQ(moduleOfFile(path.c_str()), expected) << path.size();
        }
    }
}

} // namespace
} // namespace kovalune::test
