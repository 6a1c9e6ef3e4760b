// Remembering and forgetting where it depends on what Windows has: attributes, no difference between letters of two cases,
// and a folder whose name is in the active code page.

#include "tests/params/DefaultsUser.h"

#include <cctype>
#include <gtest/gtest.h>
#include <windows.h>

namespace kovalune::test {
namespace {

using platform::Deletion;
namespace fs = std::filesystem;

class WindowsDefaultsStore : public DefaultsUser {};

constexpr char kText[] = "[Version=1.0]\r\nView=3\r\n";

bool canBeOpenedForWriting(const char* path) {
    const HANDLE file = CreateFileA(path, GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file) != FALSE;
}

TEST_F(WindowsDefaultsStore, LeavesAFileAloneThatIsInUse) {
    put(kText);
    const HANDLE open = CreateFileA(path_, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(open, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(save());
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kFailed);
    CloseHandle(open);
    EXPECT_EQ(contentOf(path_), kText);
}

TEST_F(WindowsDefaultsStore, LeavesAReadOnlyFileAlone) {
    put(kText);
    ASSERT_NE(SetFileAttributesA(path_, FILE_ATTRIBUTE_READONLY), FALSE);
    // Wine lets the superuser write it all the same.
    if (!canBeOpenedForWriting(path_)) {
        EXPECT_FALSE(save());
        EXPECT_EQ(contentOf(path_), kText);
    }
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kFailed);
    ASSERT_NE(SetFileAttributesA(path_, FILE_ATTRIBUTE_NORMAL), FALSE);
    EXPECT_TRUE(save());
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kDone);
}

TEST_F(WindowsDefaultsStore, StopsAtTheFolderForSettingsInAnyCase) {
    put("");
    std::string shouted = path_;
    for (char& c : shouted) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    ASSERT_NE(shouted, path_);
    EXPECT_EQ(removeDefaultsFile(shouted.c_str()), Deletion::kDone);
    EXPECT_FALSE(fs::exists(maker()));
    EXPECT_TRUE(fs::is_directory(folder_.path()));
}

/// Its last byte is that of a separator.
TEST_F(WindowsDefaultsStore, TakesAFolderWithAJapaneseName) {
    if (GetACP() != 932) {
        GTEST_SKIP() << "the active code page is " << GetACP() << ", not the Japanese one";
    }
    const std::string folder = folder_.file("\x90\xdd\x92\xe8\x83\x5c");
    ASSERT_TRUE(platform::createFolders(folder.c_str()));
    const ScopedSettings settings(folder);
    ASSERT_TRUE(makeDefaultsPath(path_));
    ASSERT_TRUE(makeDefaultsFolder(path_));
    EXPECT_TRUE(save());
    const fs::path wide = fs::path(folder_.path()) / L"\u8a2d\u5b9a\u30bd";
    EXPECT_EQ(contentOf(wide / "ORVEL" / "Tavik" / "Kovalune.ini"), expectedDefaults("table.ini"));
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kDone);
    EXPECT_TRUE(fs::is_empty(wide));
}

} // namespace
} // namespace kovalune::test
