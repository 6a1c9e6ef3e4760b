#include "effect/platform/Ascii.h"

#include <gtest/gtest.h>

namespace kovalune::test {
using namespace platform;
namespace {

TEST(Ascii, FoldsItsLettersAlone) {
    for (int byte = -128; byte < 128; ++byte) {
        const auto c = static_cast<char>(byte);
        const bool isUpper = c >= 'A' && c <= 'Z';
        const bool isLower = c >= 'a' && c <= 'z';
        EXPECT_EQ(lowerAscii(c), isUpper ? static_cast<char>(c + 32) : c) << byte;
        EXPECT_EQ(upperAscii(c), isLower ? static_cast<char>(c - 32) : c) << byte;
    }
}

TEST(Ascii, ComparesWithoutCase) {
    EXPECT_TRUE(equalButForCase("", ""));
    EXPECT_TRUE(equalButForCase("View", "vIEW"));
    EXPECT_FALSE(equalButForCase("View", "Views"));
    EXPECT_FALSE(equalButForCase("Views", "View"));
    EXPECT_FALSE(equalButForCase("[", "{")) << "32 apart, but no letters";
    EXPECT_FALSE(equalButForCase("\xC4", "\xE4")) << "letters of a code page";
}

} // namespace
} // namespace kovalune::test
