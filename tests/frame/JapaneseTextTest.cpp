// The Japanese texts as bytes: Windows shows narrow texts in code page 932, so that is what they are made of there.
// Elsewhere they are UTF-8, and must be such that code page 932 has them.

#include "effect/frame/texts/NoticeTable.h"
#include "effect/params/FxOptionDlg/DialogText.h"
#include "effect/share/AEUtil/AEException.h"
#include "effect/share/AEUtil/AEMemory.h"
#include "hostapi/EntryPoint.h"
#include "tests/frame/StubHost.h"

#include <gtest/gtest.h>
#ifndef _WIN32
#include <iconv.h>
#endif

namespace kovalune::test {
namespace {

#ifdef _WIN32
std::string inCodePage932(const std::string& text) {
    return text;
}
#else
std::string inCodePage932(std::string text) {
    std::string result(2 * text.size() + 1, '\0');
    const iconv_t conversion = iconv_open("CP932", "UTF-8");
    char* from = text.data();
    char* to = result.data();
    std::size_t fromLeft = text.size();
    std::size_t toLeft = result.size();
    EXPECT_NE(iconv(conversion, &from, &fromLeft, &to, &toLeft), static_cast<std::size_t>(-1)) << text;
    iconv_close(conversion);
    result.resize(result.size() - toLeft);
    return result;
}
#endif

std::string bytesOf(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

TEST(JapaneseText, OfTheDialogIsTheCodePages) {
    const char* const rows[] = {
        "90dd92e82081698e9f89f18b4e93ae82a982e7974c8cf882c982c882e882dc82b7816a",
        "8cbb8ddd82cc837083898381815b835e90dd92e882f0836683748348838b8367926c82c682b582c48b4c89af82b782e9",
        "837083898381815b835e82cc836683748348838b8367926c90dd92e882f08f898afa8ff391d482c9959c8b4182b782e9"};
    for (int32_t row = 0; row < 3; ++row) {
        EXPECT_EQ(inCodePage932(FxOptionDlg::dialogText(row, LanguageChoice::kJapanese)), bytesOf(rows[row]))
            << row;
    }
}

TEST(JapaneseText, OfTheNoticesIsTheCodePages) {
    const std::string about = inCodePage932(noticeText(kAboutNotice, LanguageChoice::kJapanese));
    EXPECT_TRUE(about.starts_with("Kovalune " + bytesOf("82cd"))) << about;
    EXPECT_TRUE(about.ends_with(bytesOf("82c582b78142"))) << about;
    EXPECT_EQ(inCodePage932(noticeText(kDialogTitle, LanguageChoice::kJapanese)), "Kovalune");
}

TEST(JapaneseText, OfAnUnknownErrorIsTheCodePages) {
    StubHost host;
    host.fault = [](const std::string&, int) -> PF_Err { throw "of no known kind"; };
    EXPECT_EQ(EntryPointFunc(PF_Cmd_PARAMS_SETUP, &host.in, &host.out, nullptr, nullptr, nullptr), 512);
    EXPECT_EQ(inCodePage932(host.out.return_msg), bytesOf("957396be82c883478389815b"));
}

TEST(JapaneseText, OfLackingMemoryIsTheCodePages) {
    StubHost host;
    host.fault = [](const std::string& call, int) -> PF_Err { return call == "host_new_handle" ? 4 : 0; };
    try {
        AEUtil::AEMemory::alloc(1000, &host.basic);
        FAIL() << "there was memory";
    } catch (const AEUtil::AEException& error) {
        EXPECT_TRUE(inCodePage932(error.what())
                        .ends_with("unsigned int)" +
                                   bytesOf("83818382838a8a6d95db82c98eb8947382b582dc82b582bd8142") +
                                   "alloc_size=1032\n"))
            << error.what();
    }
}

/// The numbers and names of a format are what they are in any code page.
TEST(JapaneseText, LeavesTheOtherMessagesAlone) {
    StubHost host;
    host.fault = [](const std::string&, int) -> PF_Err { throw 516L; };
    EXPECT_EQ(EntryPointFunc(PF_Cmd_PARAMS_SETUP, &host.in, &host.out, nullptr, nullptr, nullptr), 516);
    EXPECT_STREQ(host.out.return_msg, "error code = 516\nPF_Err_BAD_CALLBACK_PARAM");
}

} // namespace
} // namespace kovalune::test
