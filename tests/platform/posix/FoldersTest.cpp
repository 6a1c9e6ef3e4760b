#include "effect/platform/Platform.h"
#include "tests/platform/ScopedVariable.h"

#include <array>
#include <gtest/gtest.h>
#include <pwd.h>
#include <string>
#include <unistd.h>

namespace kovalune::test {
using namespace platform;
namespace {

std::string folder() {
    std::array<char, 1024> buffer{};
    buffer.fill('x');
    return applicationDataFolder(buffer.data(), buffer.size()) ? buffer.data() : "none";
}

TEST(ApplicationDataFolder, IsTheConfiguredOne) {
    const ScopedVariable home("HOME", "/home/someone");
    const ScopedVariable configured("XDG_CONFIG_HOME", "/settings/of/someone");
    EXPECT_EQ(folder(), "/settings/of/someone");
}

TEST(ApplicationDataFolder, IsInTheHomeFolderWithoutAnAbsoluteConfiguredOne) {
    const ScopedVariable home("HOME", "/home/someone");
    for (const char* value : {static_cast<const char*>(nullptr), "", "settings", "./settings"}) {
        const ScopedVariable configured("XDG_CONFIG_HOME", value);
        EXPECT_EQ(folder(), "/home/someone/.config");
    }
}

TEST(ApplicationDataFolder, ComesFromTheUserDatabaseWithoutAnAbsoluteHome) {
    const passwd* entry = ::getpwuid(::geteuid());
    const std::string home = entry != nullptr ? entry->pw_dir : "";
    const std::string expected = home.empty() ? "none" : (home == "/" ? "" : home) + "/.config";
    const ScopedVariable configured("XDG_CONFIG_HOME", nullptr);
    for (const char* value : {static_cast<const char*>(nullptr), "", "someone"}) {
        const ScopedVariable variable("HOME", value);
        EXPECT_EQ(folder(), expected);
    }
}

TEST(ApplicationDataFolder, HasNoSlashAtItsEnd) {
    {
        const ScopedVariable configured("XDG_CONFIG_HOME", "/settings///");
        EXPECT_EQ(folder(), "/settings");
    }
    const ScopedVariable root("XDG_CONFIG_HOME", "//");
    EXPECT_EQ(folder(), "/");
    const ScopedVariable none("XDG_CONFIG_HOME", nullptr);
    const ScopedVariable home("HOME", "/home/someone/");
    EXPECT_EQ(folder(), "/home/someone/.config");
    const ScopedVariable rootHome("HOME", "/");
    EXPECT_EQ(folder(), "/.config");
}

TEST(ApplicationDataFolder, IsEmptyWhereItDoesNotFitWithItsEnd) {
    const ScopedVariable configured("XDG_CONFIG_HOME", "/abc");
    std::array<char, 6> buffer{'x', 'x', 'x', 'x', 'x', 'x'};
    EXPECT_FALSE(applicationDataFolder(buffer.data(), 4));
    EXPECT_EQ(buffer[0], '\0');
    EXPECT_EQ(buffer[4], 'x');
    EXPECT_TRUE(applicationDataFolder(buffer.data(), 5));
    EXPECT_STREQ(buffer.data(), "/abc");
    EXPECT_EQ(buffer[5], 'x');
    EXPECT_FALSE(applicationDataFolder(buffer.data(), 1));
    EXPECT_EQ(buffer[0], '\0');
}

TEST(ApplicationDataFolder, WritesNothingToABufferOfNoSize) {
    char untouched = 'x';
    EXPECT_FALSE(applicationDataFolder(&untouched, 0));
    EXPECT_EQ(untouched, 'x');
    EXPECT_FALSE(applicationDataFolder(nullptr, 10));
}

} // namespace
} // namespace kovalune::test
