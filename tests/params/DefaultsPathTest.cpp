#include "effect/params/DefaultsFile.h"
#include "tests/platform/posix/ScopedVariable.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace kovalune {
namespace {

using platform::ScopedVariable;

TEST(DefaultsPath, LiesInTheUsersSettings) {
    const ScopedVariable folder("XDG_CONFIG_HOME", "/some/folder");
    char path[kDefaultsPathBytes];
    EXPECT_TRUE(makeDefaultsPath(path));
    EXPECT_STREQ(path, "/some/folder/ORVEL/Tavik/Kovalune.ini");
}

TEST(DefaultsPath, FitsItsBufferOrIsEmpty) {
    const std::string tail = "/ORVEL/Tavik/Kovalune.ini";
    const std::string longest = "/" + std::string(259 - 1 - tail.size(), 'x');
    char path[kDefaultsPathBytes];
    {
        const ScopedVariable folder("XDG_CONFIG_HOME", longest.c_str());
        EXPECT_TRUE(makeDefaultsPath(path));
        EXPECT_EQ(std::string(path), longest + tail);
        EXPECT_EQ(std::strlen(path), 259U);
    }
    for (const std::string& more : {std::string("x"), std::string(5000, 'x')}) {
        const ScopedVariable folder("XDG_CONFIG_HOME", (longest + more).c_str());
        std::memset(path, 'z', sizeof path);
        EXPECT_FALSE(makeDefaultsPath(path));
        EXPECT_STREQ(path, "");
    }
}

} // namespace
} // namespace kovalune
