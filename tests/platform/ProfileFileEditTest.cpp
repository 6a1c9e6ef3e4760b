#include "effect/platform/ProfileFile.h"

#include <gtest/gtest.h>

namespace kovalune::test {
using namespace platform;
namespace {

TEST(ProfileFileSet, StartsAnEmptyText) {
    EXPECT_EQ(withProfileValue("", "s", "k", "v"), "[s]\r\nk=v\r\n");
}

TEST(ProfileFileSet, ReplacesAValueInItsPlace) {
    EXPECT_EQ(withProfileValue("; top\n[s]\n a = 1 \nb=2\n\n[t]\na=3\n", "S", "A", "9"),
              "; top\n[s]\n a = 9\nb=2\n\n[t]\na=3\n");
    EXPECT_EQ(withProfileValue("[s]\r\na=1\r\nb=2\r\n", "s", "a", ""), "[s]\r\na=\r\nb=2\r\n");
    EXPECT_EQ(withProfileValue("[s]\r\na=\r\nb=2\r\n", "s", "a", "1"), "[s]\r\na=1\r\nb=2\r\n");
    EXPECT_EQ(withProfileValue("[s]\na=1", "s", "a", "2"), "[s]\na=2");
}

TEST(ProfileFileSet, ReplacesTheFirstOfEqualKeys) {
    EXPECT_EQ(withProfileValue("[s]\na=1\na=2\n[s]\na=3\n", "s", "a", "9"), "[s]\na=9\na=2\n[s]\na=3\n");
}

TEST(ProfileFileSet, AppendsANewKeyToItsSectionBeforeBlankLines) {
    EXPECT_EQ(withProfileValue("[s]\na=1\n\n \t\r\n[t]\nb=2\n", "s", "b", "9"),
              "[s]\na=1\nb=9\r\n\n \t\r\n[t]\nb=2\n");
    EXPECT_EQ(withProfileValue("[s]\n[t]\n", "s", "a", "1"), "[s]\na=1\r\n[t]\n");
    EXPECT_EQ(withProfileValue("[s]\na=1\n\n; note\n\n\n", "s", "b", "2"), "[s]\na=1\n\n; note\nb=2\r\n\n\n");
}

TEST(ProfileFileSet, EndsALastLineBeforeAddingToIt) {
    EXPECT_EQ(withProfileValue("[s]\na=1", "s", "b", "2"), "[s]\na=1\r\nb=2\r\n");
    EXPECT_EQ(withProfileValue("[s]\na=1", "t", "b", "2"), "[s]\na=1\r\n[t]\r\nb=2\r\n");
    EXPECT_EQ(withProfileValue("[s]", "s", "b", "2"), "[s]\r\nb=2\r\n");
}

TEST(ProfileFileSet, AppendsANewSectionToTheText) {
    EXPECT_EQ(withProfileValue("[s]\na=1\n\n", "t", "b", "2"), "[s]\na=1\n\n[t]\r\nb=2\r\n");
    EXPECT_EQ(withProfileValue("; only a comment\n", "t", "b", "2"), "; only a comment\n[t]\r\nb=2\r\n");
}

TEST(ProfileFileSet, KeepsAByteOrderMark) {
    EXPECT_EQ(withProfileValue("\xEF\xBB\xBF", "s", "k", "v"), "\xEF\xBB\xBF[s]\r\nk=v\r\n");
    EXPECT_EQ(withProfileValue("\xEF\xBB\xBF[s]\nk=1\n", "s", "k", "v"), "\xEF\xBB\xBF[s]\nk=v\n");
    EXPECT_EQ(withProfileValue("\xEF\xBB\xBF[s]", "s", "k", "v"), "\xEF\xBB\xBF[s]\r\nk=v\r\n");
}

TEST(ProfileFileSet, TrimsNamesAndKeepsTheValue) {
    EXPECT_EQ(withProfileValue("", " s ", "\tk ", " 'v' "), "[s]\r\nk= 'v' \r\n");
}

TEST(ProfileFileSet, RefusesWhatWouldNotBeReadBack) {
    for (const char* section : {"a]b", "a\nb", "a\rb"}) {
        EXPECT_EQ(withProfileValue("", section, "k", "v"), std::nullopt) << section;
    }
    for (const char* key : {"", "  ", "a=b", "=", ";a", " ;a", "[a", "a\nb", "a\rb"}) {
        EXPECT_EQ(withProfileValue("", "s", key, "v"), std::nullopt) << key;
    }
    for (const char* value : {"a\nb", "a\rb", "\n", "a\r\n[t]"}) {
        EXPECT_EQ(withProfileValue("", "s", "k", value), std::nullopt) << value;
    }
}

TEST(ProfileFileDeleteKey, RemovesItsLineOnly) {
    EXPECT_EQ(withoutProfileKey("; c\n[s]\na=1\r\nb=2\n[t]\na=3\n", "S", "A"), "; c\n[s]\nb=2\n[t]\na=3\n");
    EXPECT_EQ(withoutProfileKey("[s]\na=1\nb=2", "s", "b"), "[s]\na=1\n");
    EXPECT_EQ(withoutProfileKey("\xEF\xBB\xBF[s]\na=1\n", "s", "a"), "\xEF\xBB\xBF[s]\n");
}

TEST(ProfileFileDeleteKey, UncoversNoSecondOne) {
    const std::string text = withoutProfileKey("[s]\na=1\nb=2\nA=3\nc=4\n[s]\na=5\n", "s", "a");
    EXPECT_EQ(text, "[s]\nb=2\nc=4\n[s]\na=5\n");
    EXPECT_EQ(findProfileValue(text, "s", "a"), std::nullopt);
}

TEST(ProfileFileDeleteKey, ChangesNothingWithoutTheKey) {
    const std::string text = "[s]\na=1\n;b=2\n";
    EXPECT_EQ(withoutProfileKey(text, "s", "b"), text);
    EXPECT_EQ(withoutProfileKey(text, "t", "a"), text);
    EXPECT_EQ(withoutProfileKey(text, "s", ""), text);
    EXPECT_EQ(withoutProfileKey("", "s", "a"), "");
}

TEST(ProfileFileDeleteSection, RemovesItUpToTheNextOne) {
    EXPECT_EQ(withoutProfileSection("; c\n[s]\na=1\n\n; d\n[t]\nb=2\n", "S"), "; c\n[t]\nb=2\n");
    EXPECT_EQ(withoutProfileSection("[s]\na=1\n[t]\nb=2", "t"), "[s]\na=1\n");
    EXPECT_EQ(withoutProfileSection("\xEF\xBB\xBF[s]\na=1\n", "s"), "\xEF\xBB\xBF");
}

TEST(ProfileFileDeleteSection, UncoversNoSecondOne) {
    EXPECT_EQ(withoutProfileSection("[s]\na=1\n[t]\nb=2\n[S]\na=3\n", "s"), "[t]\nb=2\n");
}

TEST(ProfileFileDeleteSection, ChangesNothingWithoutTheSection) {
    const std::string text = "\xEF\xBB\xBFx\n[s]\na=1";
    EXPECT_EQ(withoutProfileSection(text, "t"), text);
    EXPECT_EQ(withoutProfileSection("", "t"), "");
}

} // namespace
} // namespace kovalune::test
