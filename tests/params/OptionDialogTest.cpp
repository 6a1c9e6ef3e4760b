// The Option dialog: what it shows when it opens and what its buttons end with.

#include "effect/params/FxOptionDlg/AEFxOptionDialog.h"
#include "effect/params/FxOptionDlg/DialogText.h"
#include "tests/params/FakeWindows.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

using namespace FxOptionDlg;
using Calls = std::vector<std::string>;

constexpr LanguageChoice kEnglish = LanguageChoice::kEnglish;

AEFxOptionDialog::Setting english(const char* title = "Title", bool enabled = true) {
    return {title, enabled, kEnglish};
}

/// What the dialog's window gets, under the number 8 and in the middle of its parent 4.
Calls opened(const AEFxOptionDialog::Setting& setting) {
    FakeWindows windows;
    windows.parents[FakeWindows::window(8)] = FakeWindows::window(4);
    windows.rects[FakeWindows::window(4)] = {0, 0, 1000, 800};
    windows.rects[FakeWindows::window(8)] = {0, 0, 400, 300};
    AEFxOptionDialog dialog(nullptr, nullptr, setting);
    EXPECT_EQ(dialog.onInitDialog(FakeWindows::window(8), 0), 0);
    return windows.calls;
}

TEST(OptionDialog, SetsItsTextsAndItsPlaceWhenItOpens) {
    EXPECT_EQ(opened(english()), (Calls{"text 8 Title", "move 8 300,250 400x300",
                                        "text 2000008 Settings (Valid from next start-up)",
                                        "text 2001008 Set current parameter values to default",
                                        "text 2002008 Restore initial default parameter values"}));
}

TEST(OptionDialog, GreysOutItsButtonsWhereNothingCanBeChosen) {
    Calls expected = opened(english());
    expected.insert(expected.end(), {"disable 2001008", "disable 2002008"});
    EXPECT_EQ(opened(english("Title", false)), expected);
}

TEST(OptionDialog, MayHaveNoTitleAndCutsALongOne) {
    EXPECT_EQ(opened(english("")).front(), "text 8 ");
    EXPECT_EQ(opened(english(std::string(255, 'x').c_str())).front(), "text 8 " + std::string(255, 'x'));
    EXPECT_EQ(opened(english(std::string(256, 'x').c_str())).front(), "text 8 " + std::string(255, 'x'));
    EXPECT_EQ(opened(english(std::string(5000, 'x').c_str())).front(), "text 8 " + std::string(255, 'x'));
}

TEST(OptionDialog, EndsWithWhatItsButtonsStandFor) {
    FakeWindows windows;
    AEFxOptionDialog dialog(nullptr, nullptr, english());
    const std::pair<uint16_t, const char*> rows[] = {
        {1, "end 8 0"}, {2, "end 8 0"}, {2001, "end 8 1"}, {2002, "end 8 2"}};
    for (const auto& [id, call] : rows) {
        windows.calls.clear();
        EXPECT_EQ(dialog.onCommand(FakeWindows::window(8), 0, id, 0), 1);
        EXPECT_EQ(windows.calls, Calls{call}) << id;
    }
}

TEST(OptionDialog, StaysOpenForOtherControls) {
    FakeWindows windows;
    AEFxOptionDialog dialog(nullptr, nullptr, english());
    for (const uint16_t id : std::initializer_list<uint16_t>{0, 3, 2000, 2003, 65535}) {
        EXPECT_EQ(dialog.onCommand(FakeWindows::window(8), 0, id, 0), 1) << id;
    }
    EXPECT_TRUE(windows.calls.empty());
}

TEST(OptionDialog, ThatCannotBeShownIsOneThatWasClosed) {
    FakeWindows windows;
    AEFxOptionDialog dialog(FakeWindows::window(2), FakeWindows::window(4), english());
    for (const auto& [shown, result] : {std::pair(-1, 0), {0, 0}, {1, 1}, {2, 2}}) {
        windows.result = shown;
        EXPECT_EQ(dialog.doModal(), result);
    }
    EXPECT_EQ(windows.requests.front().resource, 201);
    EXPECT_EQ(windows.requests.front().module, FakeWindows::window(2));
    EXPECT_EQ(windows.requests.front().parent, FakeWindows::window(4));
}

/// As the system plays it: the messages of a dialog whose button is pressed.
TEST(OptionDialog, ComesFromAButtonToItsResult) {
    for (const auto& [button, result] : {std::pair(1, 0), {2001, 1}, {2002, 2}}) {
        const auto word = static_cast<uintptr_t>(button);
        FakeWindows windows;
        windows.show = [&](const platform::DialogRequest& request) -> intptr_t {
            const platform::Window window = FakeWindows::window(8);
            EXPECT_EQ(request.procedure(window, 48, 0, 0), 0);
            EXPECT_EQ(request.procedure(window, 272, 0, reinterpret_cast<intptr_t>(request.object)), 0);
            EXPECT_EQ(request.procedure(window, 273, word, 0), 1);
            const std::string end = windows.calls.back();
            EXPECT_EQ(request.procedure(window, 2, 0, 0), 1);
            return end.back() - '0';
        };
        EXPECT_EQ(AEFxOptionDialog(nullptr, nullptr, english()).doModal(), result);
    }
}

TEST(DialogText, IsEmptyForUnknownRowsAndLanguages) {
    for (const int32_t row : {-1, 3, 2000, 0x7fffffff}) {
        for (const int32_t language : {0, 1, 2}) {
            EXPECT_STREQ(dialogText(row, static_cast<LanguageChoice>(language)), "") << row;
        }
    }
    EXPECT_STREQ(dialogText(0, static_cast<LanguageChoice>(3)), "");
    EXPECT_STREQ(dialogText(0, static_cast<LanguageChoice>(-1)), "");
}

TEST(DialogText, HasTwoLanguages) {
    for (const int32_t row : {0, 1, 2}) {
        EXPECT_STRNE(dialogText(row, static_cast<LanguageChoice>(1)), "");
        EXPECT_STRNE(dialogText(row, static_cast<LanguageChoice>(2)), "");
        EXPECT_STRNE(dialogText(row, static_cast<LanguageChoice>(1)),
                     dialogText(row, static_cast<LanguageChoice>(2)));
    }
}

} // namespace
} // namespace kovalune::test
