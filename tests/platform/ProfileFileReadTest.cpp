#include "effect/platform/ProfileFile.h"

#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
using namespace platform;
namespace {

using namespace std::string_view_literals;

TEST(ProfileFileFind, FindsAKeyInItsSection) {
    constexpr auto kText = "[one]\r\na=1\r\n[two]\r\na=2\r\nb=3\r\n"sv;
    EXPECT_EQ(findProfileValue(kText, "one", "a"), "1");
    EXPECT_EQ(findProfileValue(kText, "two", "a"), "2");
    EXPECT_EQ(findProfileValue(kText, "two", "b"), "3");
    EXPECT_EQ(findProfileValue(kText, "one", "b"), std::nullopt);
    EXPECT_EQ(findProfileValue(kText, "three", "a"), std::nullopt);
    EXPECT_EQ(findProfileValue("", "one", "a"), std::nullopt);
}

TEST(ProfileFileFind, ComparesNamesWithoutAsciiCase) {
    EXPECT_EQ(findProfileValue("[SecTion]\nKeY=v\n", "sECtION", "kEy"), "v");
    // U+00C4 and U+00E4 in UTF-8 differ by 0x20 in their last byte, but are not ASCII.
    EXPECT_EQ(findProfileValue("[s]\n\xC3\x84=v\n", "s", "\xC3\xA4"), std::nullopt);
    // '@' and '`', '[' and '{' lie beside the letters and differ by the same bit.
    EXPECT_EQ(findProfileValue("[s]\n@=v\nx{=w\n", "s", "`"), std::nullopt);
    EXPECT_EQ(findProfileValue("[s]\n@=v\nx{=w\n", "s", "x["), std::nullopt);
}

TEST(ProfileFileFind, DoesNotTakeAPrefixForAName) {
    constexpr auto kText = "[section]\nkey=1\n"sv;
    EXPECT_EQ(findProfileValue(kText, "sect", "key"), std::nullopt);
    EXPECT_EQ(findProfileValue(kText, "sections", "key"), std::nullopt);
    EXPECT_EQ(findProfileValue(kText, "section", "ke"), std::nullopt);
    EXPECT_EQ(findProfileValue(kText, "section", "keys"), std::nullopt);
}

TEST(ProfileFileFind, TakesTheFirstOfEqualNames) {
    EXPECT_EQ(findProfileValue("[s]\nk=1\nK=2\n", "s", "k"), "1");
    EXPECT_EQ(findProfileValue("[s]\nk=1\n[S]\nk=2\nonly=3\n", "s", "k"), "1");
    EXPECT_EQ(findProfileValue("[s]\nk=1\n[S]\nk=2\nonly=3\n", "s", "only"), std::nullopt);
}

TEST(ProfileFileFind, IgnoresBlanksAroundNamesAndValues) {
    constexpr auto kText = " \t[ \ts\t ] \r\n \t k \t= \tv w\t \r\n"sv;
    EXPECT_EQ(findProfileValue(kText, "s", "k"), "v w");
    EXPECT_EQ(findProfileValue(kText, " s\t", "\tk "), "v w");
}

TEST(ProfileFileFind, SkipsCommentsAndLinesWithoutEquals) {
    constexpr auto kText = "[s]\n;k=1\n \t;k=2\nk\n=3\n;[t]\nk=4;5\n"sv;
    EXPECT_EQ(findProfileValue(kText, "s", "k"), "4;5");
    EXPECT_EQ(findProfileValue(kText, "s", ";k"), std::nullopt);
    EXPECT_EQ(findProfileValue(kText, "s", ""), std::nullopt);
    EXPECT_EQ(findProfileValue(kText, "t", "k"), std::nullopt);
}

TEST(ProfileFileFind, SplitsAtTheFirstEquals) {
    EXPECT_EQ(findProfileValue("[s]\nk=a=b\n", "s", "k"), "a=b");
}

TEST(ProfileFileFind, IgnoresKeysBeforeTheFirstSection) {
    EXPECT_EQ(findProfileValue("k=1\n[s]\nk=2\n", "s", "k"), "2");
    EXPECT_EQ(findProfileValue("k=1\n[s]\n", "", "k"), std::nullopt);
}

TEST(ProfileFileFind, TakesABracketLineForASectionOnlyIfItCloses) {
    EXPECT_EQ(findProfileValue("[s]\n[t\nk=1\n", "s", "k"), "1");
    EXPECT_EQ(findProfileValue("[s] text\nk=1\n", "s", "k"), "1");
    EXPECT_EQ(findProfileValue("[s]\n[t]=x\nk=1\n", "s", "k"), std::nullopt);
}

TEST(ProfileFileFind, TakesEitherLineEndAndALastLineWithout) {
    EXPECT_EQ(findProfileValue("[s]\r\nk=1\nl=2\r\nm=3", "s", "k"), "1");
    EXPECT_EQ(findProfileValue("[s]\r\nk=1\nl=2\r\nm=3", "s", "l"), "2");
    EXPECT_EQ(findProfileValue("[s]\r\nk=1\nl=2\r\nm=3", "s", "m"), "3");
}

TEST(ProfileFileFind, TellsAnEmptyValueFromNone) {
    EXPECT_EQ(findProfileValue("[s]\nk=\nl= \t\r\n", "s", "k"), "");
    EXPECT_EQ(findProfileValue("[s]\nk=\nl= \t\r\n", "s", "l"), "");
}

TEST(ProfileFileFind, SkipsAByteOrderMarkAtTheStartOnly) {
    EXPECT_EQ(findProfileValue("\xEF\xBB\xBF[s]\nk=1\n", "s", "k"), "1");
    EXPECT_EQ(findProfileValue("\n\xEF\xBB\xBF[s]\nk=1\n", "s", "k"), std::nullopt);
    EXPECT_EQ(findProfileValue("\xEF\xBB\xBF", "s", "k"), std::nullopt);
}

TEST(ProfileFileFind, ReadsOnPastNulBytesAndLongLines) {
    const std::string text = "[s]\n" + std::string("a\0b=\0\n", 6) + std::string(300000, '=') + "\n" +
                             std::string(300000, '[') + "\nlong=" + std::string(200000, 'x') + "\nk=1\n";
    EXPECT_EQ(findProfileValue(text, "s", "k"), "1");
    EXPECT_EQ(findProfileValue(text, "s", "long"), std::string(200000, 'x'));
    EXPECT_EQ(findProfileValue(text, "s", "a"), std::nullopt);
}

TEST(ProfileValueAsInt, ReadsDecimalDigitsAfterBlanksAndASign) {
    EXPECT_EQ(profileValueAsInt("0"), 0);
    EXPECT_EQ(profileValueAsInt("007"), 7);
    EXPECT_EQ(profileValueAsInt(" \t42"), 42);
    EXPECT_EQ(profileValueAsInt("+42"), 42);
    EXPECT_EQ(profileValueAsInt("-42"), -42);
}

TEST(ProfileValueAsInt, StopsAtTheFirstCharacterItCannotUse) {
    EXPECT_EQ(profileValueAsInt("12abc"), 12);
    EXPECT_EQ(profileValueAsInt("12 34"), 12);
    EXPECT_EQ(profileValueAsInt("1.9"), 1);
    EXPECT_EQ(profileValueAsInt("1,9"), 1);
    EXPECT_EQ(profileValueAsInt("0x10"), 0);
    EXPECT_EQ(profileValueAsInt("5\0"
                                "6"sv),
              5);
    EXPECT_EQ(profileValueAsInt("9:"), 9);
    EXPECT_EQ(profileValueAsInt("9/"), 9);
}

TEST(ProfileValueAsInt, IsZeroWithoutDigits) {
    EXPECT_EQ(profileValueAsInt(""), 0);
    EXPECT_EQ(profileValueAsInt("-"), 0);
    EXPECT_EQ(profileValueAsInt("abc"), 0);
    EXPECT_EQ(profileValueAsInt("--5"), 0);
    EXPECT_EQ(profileValueAsInt("- 5"), 0);
    EXPECT_EQ(profileValueAsInt("\"5\""), 0);
}

TEST(ProfileValueAsInt, WrapsModuloTwoToThe32) {
    EXPECT_EQ(profileValueAsInt("2147483647"), 2147483647);
    EXPECT_EQ(profileValueAsInt("2147483648"), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(profileValueAsInt("-2147483648"), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(profileValueAsInt("-2147483649"), 2147483647);
    EXPECT_EQ(profileValueAsInt("4294967295"), -1);
    EXPECT_EQ(profileValueAsInt("4294967296"), 0);
    EXPECT_EQ(profileValueAsInt("4294967303"), 7);
    EXPECT_EQ(profileValueAsInt("100000000000000000000"), 1661992960); // 10^20 mod 2^32
}

TEST(ProfileValueAsString, LosesOnePairOfEqualQuotes) {
    EXPECT_EQ(profileValueAsString("\"a b\""), "a b");
    EXPECT_EQ(profileValueAsString("'a b'"), "a b");
    EXPECT_EQ(profileValueAsString("\" a \""), " a ");
    EXPECT_EQ(profileValueAsString("''a''"), "'a'");
    EXPECT_EQ(profileValueAsString("\"\""), "");
}

TEST(ProfileValueAsString, KeepsQuotesThatAreNotAPair) {
    EXPECT_EQ(profileValueAsString("\"a'"), "\"a'");
    EXPECT_EQ(profileValueAsString("\"a"), "\"a");
    EXPECT_EQ(profileValueAsString("a\""), "a\"");
    EXPECT_EQ(profileValueAsString("\""), "\"");
    EXPECT_EQ(profileValueAsString("xax"), "xax");
    EXPECT_EQ(profileValueAsString(""), "");
}

TEST(ProfileValueAsString, EndsAtANul) {
    EXPECT_EQ(profileValueAsString("ab\0cd"sv), "ab");
}

} // namespace
} // namespace kovalune::test
