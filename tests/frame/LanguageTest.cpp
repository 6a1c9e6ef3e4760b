#include "effect/frame/texts/Language.h"
#include "effect/frame/texts/NoticeTable.h"

#include <gtest/gtest.h>
#include <string>

namespace kovalune::test {
namespace {

uint32_t code(const char* text) {
    return parseCommandLine(text).languageCode;
}

constexpr uint32_t kJP = 0x4A50;
constexpr uint32_t kEN = 0x454E;

TEST(CommandLine, TakesTheLanguageInEveryForm) {
    for (const char* text :
         {"host -L JP", "host -ljp", "host -Ljp", "host -l jP", "host -L \t  JP", "host\t-LJP", "host -LJP x",
          "host -LJP\tx", "host x  -LJP", " -L JP", "\t-L JP"}) {
        EXPECT_EQ(code(text), kJP) << text;
    }
    EXPECT_EQ(code("host -L EN"), kEN);
    EXPECT_EQ(code("host -Lj"), uint32_t{'J'});
}

TEST(CommandLine, FoldsOnlyLettersOfTheAlphabet) {
    EXPECT_EQ(code("h -L a{`z"), 0x417B605AU);
    EXPECT_EQ(code("h -L \xE3\xFF"), 0xE3FFU);
}

TEST(CommandLine, KeepsTheLastFourLetters) {
    EXPECT_EQ(code("h -L ABCD"), 0x41424344U);
    EXPECT_EQ(code("h -L ABCDE"), 0x42434445U);
    EXPECT_EQ(code("h -L japaneseJP"), 0x53454A50U);
}

TEST(CommandLine, WantsABlankBeforeTheDash) {
    for (const char* text :
         {"x-L JP", "host x-L JP", "-L JP", "-LJP", "host --L JP", "host \"-L JP", "host\n-L JP"}) {
        EXPECT_EQ(code(text), 0U) << text;
    }
}

TEST(CommandLine, SeesNoProtectionInQuotes) {
    EXPECT_EQ(code("host \"a -L JP\""), 0x4A5022U); // the closing quote is a letter like any other
    EXPECT_EQ(code("host \" -LJP x\""), kJP);
    EXPECT_EQ(code("host \"a b\"-L JP"), 0U);
    EXPECT_EQ(code("host \" \"-L JP"), 0U);
}

TEST(CommandLine, HasNoLanguageWhereNoLettersFollow) {
    for (const char* text :
         {"", "host", "host -L", "host -L   ", "host -", "host - L JP", "host L JP", "host -X JP"}) {
        EXPECT_EQ(code(text), 0U) << text;
    }
}

TEST(CommandLine, TakesWhateverStandsBehindTheOption) {
    EXPECT_EQ(code("host -L -RE"), 0x2D5245U);
    EXPECT_FALSE(parseCommandLine("host -L -RE").renderEngine);
}

TEST(CommandLine, LetsALaterOptionReplaceAnEarlierOne) {
    EXPECT_EQ(code("host -L JP -L EN"), kEN);
    EXPECT_EQ(code("host -LEN -LJP"), kJP);
    EXPECT_EQ(code("host -L JP -L"), 0U);
}

TEST(CommandLine, KnowsTheRenderEngineSwitch) {
    for (const char* text : {"host -RE", "host -re", "host -rE x", "host -REx", "host -L JP -RE"}) {
        EXPECT_TRUE(parseCommandLine(text).renderEngine) << text;
    }
    for (const char* text : {"host", "host -R", "host -R E", "host -RX", "host x-RE", "-RE"}) {
        EXPECT_FALSE(parseCommandLine(text).renderEngine) << text;
    }
    EXPECT_EQ(code("host -RE -L JP"), kJP);
    EXPECT_EQ(code("host -R -L JP"), kJP);
    EXPECT_EQ(code("host -R-L JP"), 0U);
    EXPECT_EQ(code("host -RE-L JP"), 0U);
}

TEST(LanguageChoice, GoesByTheLettersAndThenByTheCodePage) {
    for (const unsigned codePage : {932U, 65001U, 1252U, 0U}) {
        EXPECT_EQ(chooseLanguage(kJP, codePage), LanguageChoice::kJapanese);
        EXPECT_EQ(chooseLanguage(kEN, codePage), LanguageChoice::kEnglish);
        EXPECT_EQ(chooseLanguage(0x4A, codePage), LanguageChoice::kEnglish);
        EXPECT_EQ(chooseLanguage(0x584A50, codePage), LanguageChoice::kEnglish);
    }
    EXPECT_EQ(chooseLanguage(0, 932), LanguageChoice::kJapanese);
    EXPECT_EQ(chooseLanguage(0, 931), LanguageChoice::kEnglish);
    EXPECT_EQ(chooseLanguage(0, 65001), LanguageChoice::kEnglish);
}

TEST(BilingualText, FallsBackToEnglishForJapaneseAndToNothingElse) {
    const auto textIn = [](const BilingualText& text, int32_t language) {
        return std::string(text.in(static_cast<LanguageChoice>(language)));
    };
    const struct {
        BilingualText text;
        const char* japanese;
        const char* english;
    } rows[] = {
        {{"ja", "en"}, "ja", "en"}, {{"ja", nullptr}, "ja", ""}, {{nullptr, "en"}, "en", ""}, {{}, "", ""}};
    for (const auto& row : rows) {
        EXPECT_EQ(textIn(row.text, 1), row.japanese);
        EXPECT_EQ(textIn(row.text, 2), row.english);
        EXPECT_EQ(textIn(row.text, 3), "") << "an unknown language";
        EXPECT_EQ(textIn(row.text, -1), "");
    }
}

TEST(NoticeTable, HasJapaneseTextsAlone) {
    EXPECT_STREQ(noticeText(0, LanguageChoice::kJapanese), "Kovalune");
    EXPECT_STRNE(noticeText(1, LanguageChoice::kJapanese), "");
    EXPECT_STREQ(noticeText(2, LanguageChoice::kJapanese), "Kovalune");
    for (const int id : {0, 1, 2}) {
        EXPECT_STREQ(noticeText(id, LanguageChoice::kEnglish), "") << id;
    }
}

TEST(NoticeTable, GivesAnEmptyTextForAnUnknownId) {
    for (const int id : {-1, 3, 1000, -0x7fffffff - 1}) {
        EXPECT_STREQ(noticeText(id, LanguageChoice::kJapanese), "") << id;
        EXPECT_STREQ(noticeText(id, LanguageChoice::kEnglish), "") << id;
    }
}

} // namespace
} // namespace kovalune::test
