#include "effect/frame/BaseFilter.h"
#include "effect/frame/texts/NoticeTable.h"
#include "hostapi/EntryPoint.h"
#include "tests/frame/StubHost.h"
#include "tests/platform/ScopedUser.h"

#include <cstring>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

TEST(About, EndsBehindTheVersionInEnglish) {
    const ScopedLanguage language(UserLanguage::kEnglish);
    StubHost host;
    writeAboutText(&host.in, &host.out, false);
    EXPECT_STREQ(host.out.return_msg, "Kovalune 1.0.1 Release \r\r");
    writeAboutText(&host.in, &host.out, true);
    EXPECT_STREQ(host.out.return_msg, "Kovalune 1.0.1 Release build:8 \r\r");
}

TEST(About, AddsTheNoticeOnAJapaneseSystem) {
    const ScopedLanguage language(UserLanguage::kJapanese);
    StubHost host;
    const std::string notice = NoticeTable[1].japanese;
    writeAboutText(&host.in, &host.out, false);
    EXPECT_EQ(host.out.return_msg, "Kovalune 1.0.1 Release \r\r" + notice);
    writeAboutText(&host.in, &host.out, true);
    EXPECT_EQ(host.out.return_msg, "Kovalune 1.0.1 Release build:8 \r\r" + notice);
}

TEST(About, FitsTheMessageFieldInItsLongestForm) {
    const std::string longest = std::string("Kovalune 1.0.1 Release build:8 \r\r") + NoticeTable[1].japanese;
    EXPECT_LT(longest.size(), sizeof PF_OutData::return_msg);
}

TEST(About, IsShortWithoutAShiftKey) {
    const ScopedLanguage language(UserLanguage::kEnglish);
    StubHost host;
    EXPECT_EQ(EntryPointFunc(PF_Cmd_ABOUT, &host.in, &host.out, nullptr, nullptr, nullptr), 0);
    EXPECT_STREQ(host.out.return_msg, "Kovalune 1.0.1 Release \r\r");
}

/// Prints the format as it is.
int printFormat(A_char* buffer, const A_char* format, ...) {
    std::strcpy(buffer, format);
    return 0;
}

TEST(About, PrintsWithTheHostsFunction) {
    const ScopedLanguage language(UserLanguage::kEnglish);
    StubHost host;
    host.utils.ansi.sprintf = printFormat;
    writeAboutText(&host.in, &host.out, false);
    EXPECT_STREQ(host.out.return_msg, "%s %d.%d.%d %s %s\r\r%s");
    writeAboutText(&host.in, &host.out, true);
    EXPECT_STREQ(host.out.return_msg, "%s %d.%d.%d %s build:%d %s\r\r%s");
}

} // namespace
} // namespace kovalune::test
