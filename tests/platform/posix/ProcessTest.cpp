#include "effect/platform/posix/Process.h"

#include "effect/platform/Platform.h"
#include "tests/platform/ScopedVariable.h"
#include "tests/platform/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace kovalune::test {
using namespace platform;
namespace {

TEST(CommandLine, JoinsTheArgumentsByOneBlank) {
    const TemporaryFolder folder;
    const std::string file = folder.write("cmdline", std::string("/bin/host\0-x\0\0two words\0", 24));
    EXPECT_EQ(commandLineFrom(file.c_str()), "/bin/host -x  two words");
}

TEST(CommandLine, IsEmptyIfItCannotBeRead) {
    const TemporaryFolder folder;
    EXPECT_EQ(commandLineFrom(folder.file("missing").c_str()), "");
    EXPECT_EQ(commandLineFrom(folder.path().c_str()), "");
    EXPECT_EQ(commandLineFrom(folder.write("empty", "").c_str()), "");
}

TEST(CommandLine, IsThisProcesss) {
    std::ifstream stream("/proc/self/cmdline", std::ios::binary);
    std::string expected;
    std::string argument;
    for (bool first = true; std::getline(stream, argument, '\0'); first = false) {
        expected += (first ? "" : " ") + argument;
    }
    EXPECT_EQ(commandLine(), expected);
    EXPECT_NE(commandLine().find("platform_tests"), std::string::npos);
}

TEST(ShiftKey, IsNeverDown) {
    EXPECT_FALSE(shiftKeyDown());
}

TEST(LocaleName, IsJapaneseByItsLanguageAlone) {
    for (const char* name : {"ja", "JA", "Ja_JP", "ja_JP.UTF-8", "ja.eucJP", "jA@x", "ja_"}) {
        EXPECT_TRUE(localeNameIsJapanese(name)) << name;
    }
    for (const char* name : {"", "C", "C.UTF-8", "en_JA", "jam_JM", "j", "jb", "aa", "Japanese", " ja",
                             "ja-JP", "_ja", "en.ja"}) {
        EXPECT_FALSE(localeNameIsJapanese(name)) << name;
    }
}

unsigned codePage(const char* all, const char* ctype, const char* lang) {
    const ScopedVariable a("LC_ALL", all);
    const ScopedVariable c("LC_CTYPE", ctype);
    const ScopedVariable l("LANG", lang);
    return activeCodePage();
}

TEST(ActiveCodePage, FollowsTheFirstLocaleVariableThatSaysAnything) {
    EXPECT_EQ(codePage(nullptr, nullptr, nullptr), 65001U);
    EXPECT_EQ(codePage("ja_JP.UTF-8", nullptr, nullptr), 932U);
    EXPECT_EQ(codePage("ja_JP.UTF-8", "en_GB", "de_DE"), 932U);
    EXPECT_EQ(codePage("en_GB", "ja_JP", "ja_JP"), 65001U);
    EXPECT_EQ(codePage(nullptr, "ja_JP", "en_GB"), 932U);
    EXPECT_EQ(codePage("", "ja_JP", "en_GB"), 932U);
    EXPECT_EQ(codePage("", "en_GB", "ja_JP"), 65001U);
    EXPECT_EQ(codePage("", "", "ja_JP"), 932U);
    EXPECT_EQ(codePage(nullptr, nullptr, "C"), 65001U);
}

} // namespace
} // namespace kovalune::test
