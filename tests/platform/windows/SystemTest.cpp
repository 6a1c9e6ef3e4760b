// What the effect asks the system about the user and the process.

#include "effect/platform/Platform.h"
#include "effect/platform/windows/Module.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <windows.h>

namespace kovalune::platform {
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

TEST(WindowsProcess, KnowsItsCommandLine) {
    EXPECT_NE(commandLine().find("platform_tests"), std::string::npos) << commandLine();
}

TEST(WindowsProcess, TakesTheCodePageOfTheSystemOrNone) {
    EXPECT_TRUE(activeCodePage() == 0 || activeCodePage() == GetACP()) << activeCodePage();
}

TEST(WindowsModule, IsKeptAsItWasGiven) {
    EXPECT_EQ(moduleHandle(), nullptr);
    int module = 0;
    keepModuleHandle(&module);
    EXPECT_EQ(moduleHandle(), &module);
}

} // namespace
} // namespace kovalune::platform
