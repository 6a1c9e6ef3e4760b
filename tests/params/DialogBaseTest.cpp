// The procedure that dialogs share: from the system's messages to the operations of the right object.

#include "effect/params/FxOptionDlg/DialogBase.h"
#include "tests/params/FakeWindows.h"

#include <gtest/gtest.h>
#include <new>
#include <ostream>

namespace kovalune::test {
namespace {

using FxOptionDlg::dialogProcedure;
using FxOptionDlg::Window;
using Calls = std::vector<std::string>;

/// Notes which operation runs, with its arguments.
class NotingDialog : public FxOptionDlg::DialogBase {
public:
    NotingDialog() : DialogBase(nullptr, nullptr, 7) {}

    intptr_t onInitDialog(Window w, uintptr_t first) override { return note("init", w, first, 0, 21); }
    intptr_t onCommand(Window w, uint16_t code, uint16_t id, intptr_t control) override {
        notifyCode = code;
        return note("command", w, id, control, 22);
    }
    intptr_t onNotify(Window w, uintptr_t first, intptr_t second) override {
        return note("notify", w, first, second, 23);
    }
    intptr_t onClose(Window w) override { return note("close", w, 0, 0, 24); }
    intptr_t onDestroy(Window w) override { return note("destroy", w, 0, 0, 25); }

    std::string operation;
    Window window = nullptr;
    uintptr_t word = 0;
    intptr_t longWord = 0;
    uint16_t notifyCode = 0;

private:
    intptr_t note(const char* name, Window w, uintptr_t first, intptr_t second, intptr_t answer) {
        operation += name;
        window = w;
        word = first;
        longWord = second;
        return answer;
    }
};

intptr_t open(FxOptionDlg::DialogBase& dialog, Window window, uintptr_t word = 0) {
    return dialogProcedure(window, 272, word, reinterpret_cast<intptr_t>(&dialog));
}

TEST(DialogProcedure, TurnsMessagesIntoOperations) {
    const Window window = FakeWindows::window(8);
    NotingDialog dialog;
    EXPECT_EQ(open(dialog, window, 0x12345), 21);
    EXPECT_EQ(dialog.operation, "init");
    EXPECT_EQ(dialog.window, window);
    EXPECT_EQ(dialog.word, 0x12345U);

    dialog.operation.clear();
    EXPECT_EQ(dialogProcedure(window, 273, 0xABCD07D1U, -3), 22);
    EXPECT_EQ(dialog.operation, "command");
    EXPECT_EQ(dialog.notifyCode, 0xABCD);
    EXPECT_EQ(dialog.word, 2001U);
    EXPECT_EQ(dialog.longWord, -3);

    dialog.operation.clear();
    EXPECT_EQ(dialogProcedure(window, 78, 0xABCD07D1U, -4), 23);
    EXPECT_EQ(dialog.operation, "notify");
    EXPECT_EQ(dialog.word, 0xABCD07D1U);
    EXPECT_EQ(dialog.longWord, -4);

    dialog.operation.clear();
    EXPECT_EQ(dialogProcedure(window, 16, 0, 0), 24);
    EXPECT_EQ(dialogProcedure(window, 2, 0, 0), 25);
    EXPECT_EQ(dialog.operation, "closedestroy");
    EXPECT_EQ(dialog.window, window);
}

TEST(DialogProcedure, AnswersOtherMessagesWithZero) {
    NotingDialog dialog;
    open(dialog, FakeWindows::window(8));
    dialog.operation.clear();
    for (uint32_t message = 0; message < 2000; ++message) {
        if (message == 2 || message == 16 || message == 78 || message == 272 || message == 273) {
            continue;
        }
        EXPECT_EQ(dialogProcedure(FakeWindows::window(8), message, 1, 0), 0) << message;
    }
    EXPECT_EQ(dialog.operation, "");
}

TEST(DialogProcedure, AnswersForUnknownWindowsWithZero) {
    EXPECT_EQ(dialogProcedure(FakeWindows::window(8), 273, 1, 0), 0);
    EXPECT_EQ(FxOptionDlg::dialogMapSize(), 0);
    NotingDialog dialog;
    open(dialog, FakeWindows::window(8));
    EXPECT_EQ(dialogProcedure(FakeWindows::window(10), 273, 1, 0), 0);
    EXPECT_EQ(dialog.operation, "init");
}

TEST(DialogProcedure, KeepsTheDialogsOfSeveralWindowsApart) {
    NotingDialog first;
    NotingDialog second;
    open(first, FakeWindows::window(8));
    open(second, FakeWindows::window(10));
    dialogProcedure(FakeWindows::window(8), 16, 0, 0);
    EXPECT_EQ(first.operation, "initclose");
    EXPECT_EQ(second.operation, "init");
    EXPECT_EQ(FxOptionDlg::dialogMapSize(), 2);
}

TEST(DialogProcedure, LetsNoExceptionThroughAndEndsTheDialog) {
    class FailingDialog : public FxOptionDlg::DialogBase {
    public:
        FailingDialog() : DialogBase(nullptr, nullptr, 7) {}
        intptr_t onInitDialog(Window /*window*/, uintptr_t /*word*/) override { throw std::bad_alloc(); }
    };
    FakeWindows windows;
    FailingDialog dialog;
    EXPECT_EQ(open(dialog, FakeWindows::window(8)), 0);
    EXPECT_EQ(windows.calls, (Calls{"end 8 -1"}));
}

TEST(DialogMap, KeepsTheEntryOfAnEndedDialogWithoutItsObject) {
    {
        NotingDialog dialog;
        open(dialog, FakeWindows::window(8));
    }
    EXPECT_EQ(FxOptionDlg::dialogMapSize(), 1);
    EXPECT_EQ(dialogProcedure(FakeWindows::window(8), 273, 1, 0), 0);
    NotingDialog next;
    open(next, FakeWindows::window(8));
    dialogProcedure(FakeWindows::window(8), 273, 1, 0);
    EXPECT_EQ(next.operation, "initcommand");
    EXPECT_EQ(FxOptionDlg::dialogMapSize(), 1);
}

TEST(DialogMap, CanBeFreedAndMadeAgain) {
    NotingDialog dialog;
    open(dialog, FakeWindows::window(8));
    FxOptionDlg::freeDialogMap();
    FxOptionDlg::freeDialogMap();
    EXPECT_EQ(FxOptionDlg::dialogMapSize(), 0);
    EXPECT_EQ(dialogProcedure(FakeWindows::window(8), 273, 1, 0), 0);
    open(dialog, FakeWindows::window(10));
    EXPECT_EQ(FxOptionDlg::dialogMapSize(), 1);
}

TEST(DialogBase, DoesLittleOfItsOwn) {
    FakeWindows windows;
    const Window window = FakeWindows::window(8);
    FxOptionDlg::DialogBase dialog(nullptr, nullptr, 7);
    EXPECT_EQ(dialog.onInitDialog(window, 0), 1);
    EXPECT_EQ(dialog.onCommand(window, 0, 1, 0), 1);
    EXPECT_EQ(dialog.onNotify(window, 0, 0), 0);
    EXPECT_EQ(dialog.onDestroy(window), 1);
    EXPECT_TRUE(windows.calls.empty());
    EXPECT_EQ(dialog.onClose(window), 1);
    EXPECT_EQ(windows.calls, Calls{"end 8 0"});
}

TEST(DialogBase, AsksForItsDialogAndReturnsTheResult) {
    FakeWindows windows;
    FxOptionDlg::DialogBase dialog(FakeWindows::window(2), FakeWindows::window(4), 65535);
    for (const intptr_t result : {-1, 0, 1, 2, 77}) {
        windows.result = result;
        EXPECT_EQ(dialog.doModal(), result);
    }
    ASSERT_EQ(windows.requests.size(), 5U);
    EXPECT_EQ(windows.requests[0].module, FakeWindows::window(2));
    EXPECT_EQ(windows.requests[0].parent, FakeWindows::window(4));
    EXPECT_EQ(windows.requests[0].resource, 65535);
    EXPECT_EQ(windows.requests[0].procedure, &dialogProcedure);
    EXPECT_EQ(windows.requests[0].object, &dialog);
}

struct Centering {
    platform::WindowRect parent;
    platform::WindowRect own;
    const char* call;
};

std::ostream& operator<<(std::ostream& stream, const Centering& centering) {
    return stream << centering.call;
}

class CenterWindow : public testing::TestWithParam<Centering> {};

TEST_P(CenterWindow, PutsTheWindowInTheMiddleOfItsParent) {
    FakeWindows windows;
    windows.parents[FakeWindows::window(8)] = FakeWindows::window(4);
    windows.rects[FakeWindows::window(4)] = GetParam().parent;
    windows.rects[FakeWindows::window(8)] = GetParam().own;
    FxOptionDlg::DialogBase dialog(nullptr, nullptr, 7);
    dialog.centerWindow(FakeWindows::window(8));
    EXPECT_EQ(windows.calls, Calls{GetParam().call});
}

INSTANTIATE_TEST_SUITE_P(
    Places, CenterWindow,
    testing::Values(Centering{{100, 50, 1100, 850}, {0, 0, 400, 300}, "move 8 400,300 400x300"},
                    Centering{{0, 0, 101, 100}, {7, 9, 57, 40}, "move 8 25,34 50x31"},
                    Centering{{0, 0, 10, 10}, {0, 0, 101, 40}, "move 8 -45,-15 101x40"},
                    Centering{{-900, -700, -100, -100}, {0, 0, 100, 100}, "move 8 -550,-450 100x100"}));

TEST(DialogBase, LeavesAWindowWithoutAParentWhereItIs) {
    FakeWindows windows;
    windows.rects[FakeWindows::window(8)] = {0, 0, 10, 10};
    FxOptionDlg::DialogBase dialog(nullptr, nullptr, 7);
    dialog.centerWindow(FakeWindows::window(8));
    dialog.centerWindow(FakeWindows::window(10));
    EXPECT_TRUE(windows.calls.empty());
}

} // namespace
} // namespace kovalune::test
