// The texts of the Option dialog on a screen. KOVALUNE_DIALOG_TEXTS says which language this process has to show, "japanese"
// or "english": the system's locale and this program's own command line decide it.

#include "tests/windows/DialogScene.h"

#include <cstdlib>
#include <string_view>

namespace kovalune::test {
namespace {

struct Texts {
    const wchar_t* title;
    const wchar_t* group;
    const wchar_t* remember;
    const wchar_t* forget;
};

constexpr Texts kJapanese = {L"Kovalune", L"設定 （次回起動から有効になります）",
                             L"現在のパラメータ設定をデフォルト値として記憶する",
                             L"パラメータのデフォルト値設定を初期状態に復帰する"};
constexpr Texts kEnglish = {L"", L"Settings (Valid from next start-up)",
                            L"Set current parameter values to default",
                            L"Restore initial default parameter values"};

constexpr UINT kJapaneseCodePage = 932;

/// What this system shows for the bytes of a Japanese text.
std::wstring asShownHere(const std::wstring& text) {
    char bytes[256] = {};
    WideCharToMultiByte(kJapaneseCodePage, 0, text.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr);
    wchar_t shown[256] = {};
    MultiByteToWideChar(CP_ACP, 0, bytes, -1, shown, 256);
    return shown;
}

class OptionDialogTexts : public DialogScene {};

TEST_F(OptionDialogTexts, AreInTheLanguageOfSystemAndCommandLine) {
    const char* const language = std::getenv("KOVALUNE_DIALOG_TEXTS");
    ASSERT_NE(language, nullptr) << "KOVALUNE_DIALOG_TEXTS is not set";
    ASSERT_TRUE(std::string_view(language) == "japanese" || std::string_view(language) == "english");
    const bool japanese = std::string_view(language) == "japanese";
    const Texts& texts = japanese ? kJapanese : kEnglish;
    startHost();
    openDialog([&](HWND dialog) {
        EXPECT_EQ(textOf(dialog), texts.title);
        EXPECT_EQ(textOf(GetDlgItem(dialog, 2000)), asShownHere(texts.group));
        EXPECT_EQ(textOf(GetDlgItem(dialog, 2001)), asShownHere(texts.remember));
        EXPECT_EQ(textOf(GetDlgItem(dialog, 2002)), asShownHere(texts.forget));
        EXPECT_EQ(textOf(GetDlgItem(dialog, IDOK)), L"OK");
        press(dialog, IDOK);
    });
    if (GetACP() == kJapaneseCodePage) {
        EXPECT_EQ(asShownHere(kJapanese.group), kJapanese.group);
    }
}

} // namespace
} // namespace kovalune::test
