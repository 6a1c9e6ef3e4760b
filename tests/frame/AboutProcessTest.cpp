// The about text in processes with command lines of their own: each test runs this program again.

#include "effect/frame/texts/NoticeTable.h"
#include "hostapi/EntryPoint.h"
#include "tests/frame/ChildProcess.h"
#include "tests/frame/StubHost.h"
#include "tests/platform/ScopedUser.h"
#include "tests/platform/ScopedVariable.h"
#include "tests/platform/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <string_view>

namespace kovalune::test {
namespace {

constexpr char kTextFile[] = "KOVALUNE_ABOUT_TEXT_FILE";

/// What the text becomes in a process with these further arguments and this locale.
std::string aboutTextWith(std::vector<std::string> arguments, const char* locale) {
    const TemporaryFolder folder;
    const std::string file = folder.file("about");
    const ScopedVariable place(kTextFile, file.c_str());
    const ScopedVariable language("LC_ALL", locale);
    arguments.insert(arguments.begin(),
                     {"--gtest_filter=DISABLED_AboutChild.WritesItsText", "--gtest_also_run_disabled_tests"});
    EXPECT_EQ(runThisProgramAgain(arguments), 0);
    return contentOf(file);
}

/// Runs in the child alone.
TEST(DISABLED_AboutChild, WritesItsText) {
    const char* const file = std::getenv(kTextFile);
    ASSERT_NE(file, nullptr);
#ifdef _WIN32
    // The system takes no code page from a variable while it runs.
    const char* const locale = std::getenv("LC_ALL");
    const bool japanese = locale != nullptr && std::string_view(locale).starts_with("ja");
    const ScopedLanguage language(japanese ? UserLanguage::kJapanese : UserLanguage::kEnglish);
#endif
    StubHost host;
    ASSERT_EQ(EntryPointFunc(PF_Cmd_ABOUT, &host.in, &host.out, nullptr, nullptr, nullptr), 0);
    std::ofstream(file, std::ios::binary) << host.out.return_msg;
}

const std::string kEnglish = "Kovalune 1.0.1 Release \r\r";
const std::string kJapanese = kEnglish + NoticeTable[1].japanese;

TEST(AboutProcess, IsJapaneseByTheCommandLine) {
    EXPECT_EQ(aboutTextWith({"-L", "JP"}, "C"), kJapanese);
    EXPECT_EQ(aboutTextWith({"-Ljp"}, "C"), kJapanese);
}

TEST(AboutProcess, IsEnglishByTheCommandLine) {
    EXPECT_EQ(aboutTextWith({"-L", "EN"}, "ja_JP.UTF-8"), kEnglish);
    EXPECT_EQ(aboutTextWith({"-LX"}, "ja_JP.UTF-8"), kEnglish);
}

TEST(AboutProcess, GoesByTheCodePageWithoutLetters) {
    EXPECT_EQ(aboutTextWith({}, "ja_JP.UTF-8"), kJapanese);
    EXPECT_EQ(aboutTextWith({"-L"}, "ja_JP.SJIS"), kJapanese);
    EXPECT_EQ(aboutTextWith({"x-L", "EN"}, "ja_JP.UTF-8"), kJapanese);
    EXPECT_EQ(aboutTextWith({"-L"}, "C"), kEnglish);
    EXPECT_EQ(aboutTextWith({}, "en_US.UTF-8"), kEnglish);
}

} // namespace
} // namespace kovalune::test
