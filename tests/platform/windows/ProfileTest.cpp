// The promises of the profile functions, kept by the system's own.

#include "effect/platform/Platform.h"
#include "tests/platform/windows/TemporaryFile.h"

#include <gtest/gtest.h>

namespace kovalune::test {
using namespace platform;
namespace {

constexpr char kSection[] = "Version=1.0";

TEST(WindowsProfile, WritesALineThatItReadsBack) {
    const TemporaryFile file;
    EXPECT_TRUE(writeProfileString(kSection, "1 : Enable Process", "1", file.path()));
    EXPECT_TRUE(writeProfileString(kSection, "Blur Amount", "10.250000", file.path()));
    EXPECT_EQ(file.read(), "[Version=1.0]\r\n1 : Enable Process=1\r\nBlur Amount=10.250000\r\n");
    EXPECT_EQ(profileInt(kSection, "1 : Enable Process", 7, file.path()), 1);
    EXPECT_EQ(profileString(kSection, "Blur Amount", "", 128, file.path()), "10.250000");
}

TEST(WindowsProfile, ReadsNumbersWithTheirSign) {
    const TemporaryFile file;
    file.write("[S]\r\nplain=12\r\nminus=-5\r\ntail=3 px\r\nempty=\r\n");
    EXPECT_EQ(profileInt("S", "plain", 7, file.path()), 12);
    EXPECT_EQ(profileInt("S", "minus", 7, file.path()), -5);
    EXPECT_EQ(profileInt("S", "tail", 7, file.path()), 3);
    EXPECT_EQ(profileInt("S", "empty", 7, file.path()), 7);
    EXPECT_EQ(profileInt("S", "none", -7, file.path()), -7);
}

TEST(WindowsProfile, GivesTheFallbackForMissingKeysFilesAndNames) {
    const TemporaryFile file;
    file.write("[S]\r\nkey=value\r\n");
    EXPECT_EQ(profileString("S", "none", "other  ", 128, file.path()), "other");
    EXPECT_EQ(profileString("T", "key", "other", 128, file.path()), "other");
    EXPECT_EQ(profileString("S", "key", "other", 128, "C:\\no such folder\\none.ini"), "other");
    EXPECT_EQ(profileString(nullptr, "key", "other ", 128, file.path()), "other");
    EXPECT_EQ(profileString("S", nullptr, "other", 4, file.path()), "oth");
    EXPECT_EQ(profileString("S", "none", nullptr, 128, file.path()), "");
    EXPECT_EQ(profileInt("S", nullptr, 7, file.path()), 7);
    EXPECT_EQ(profileInt(nullptr, "key", 7, file.path()), 7);
    EXPECT_EQ(profileInt("S", "key", 7, nullptr), 7);
}

TEST(WindowsProfile, CutsAValueToTheBuffer) {
    const TemporaryFile file;
    file.write("[S]\r\nkey=value\r\nquoted=\" a b \"\r\n");
    EXPECT_EQ(profileString("S", "key", "", 4, file.path()), "val");
    EXPECT_EQ(profileString("S", "key", "", 1, file.path()), "");
    EXPECT_EQ(profileString("S", "key", "", 0, file.path()), "");
    EXPECT_EQ(profileString("S", "quoted", "", 128, file.path()), " a b ");
}

TEST(WindowsProfile, DeletesAKeyAndASection) {
    const TemporaryFile file;
    file.write("[S]\r\na=1\r\nb=2\r\n[T]\r\nc=3\r\n");
    EXPECT_TRUE(writeProfileString("S", "a", nullptr, file.path()));
    EXPECT_EQ(profileInt("S", "a", 7, file.path()), 7);
    EXPECT_EQ(profileInt("S", "b", 7, file.path()), 2);
    EXPECT_TRUE(writeProfileString("S", nullptr, nullptr, file.path()));
    EXPECT_EQ(profileInt("S", "b", 7, file.path()), 7);
    EXPECT_EQ(profileInt("T", "c", 7, file.path()), 3);
}

TEST(WindowsProfile, RefusesWhatCannotStandInAProfile) {
    const TemporaryFile file;
    EXPECT_FALSE(writeProfileString("S", "key", "two\r\nlines", file.path()));
    EXPECT_FALSE(writeProfileString("S", "a=b", "1", file.path()));
    EXPECT_FALSE(writeProfileString("S", "", "1", file.path()));
    EXPECT_FALSE(writeProfileString("S]", "key", "1", file.path()));
    EXPECT_FALSE(writeProfileString(nullptr, "key", "1", file.path()));
    EXPECT_FALSE(writeProfileString("S", "key", "1", nullptr));
    EXPECT_FALSE(writeProfileString("S", "key", "1", ""));
    EXPECT_FALSE(writeProfileString("S", "key", "1", "C:\\no such folder\\none.ini"));
    EXPECT_EQ(file.read(), "");
}

} // namespace
} // namespace kovalune::test
