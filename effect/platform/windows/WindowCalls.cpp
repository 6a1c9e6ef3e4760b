#include "effect/platform/WindowCalls.h"

#include <windows.h>

namespace kovalune::platform {
namespace {

static_assert(kMessageDestroy == WM_DESTROY && kMessageClose == WM_CLOSE && kMessageNotify == WM_NOTIFY &&
              kMessageInitDialog == WM_INITDIALOG && kMessageCommand == WM_COMMAND);
static_assert(sizeof(INT_PTR) == sizeof(intptr_t) && sizeof(WPARAM) == sizeof(uintptr_t) &&
              sizeof(LPARAM) == sizeof(intptr_t));

// The one procedure that the system calls knows where to go from the first request on: a program's dialogs share it.
DialogProcedure currentProcedure = nullptr;

INT_PTR CALLBACK onMessage(HWND window, UINT message, WPARAM word, LPARAM longWord) {
    return currentProcedure(window, message, word, longWord);
}

HWND handleOf(Window window) {
    return static_cast<HWND>(window);
}

intptr_t runDialog(const DialogRequest& request) {
    currentProcedure = request.procedure;
    return DialogBoxParamA(static_cast<HINSTANCE>(request.module), MAKEINTRESOURCEA(request.resource),
                           handleOf(request.parent), onMessage, reinterpret_cast<LPARAM>(request.object));
}

bool rectOf(Window window, WindowRect& rect) {
    RECT found = {};
    if (GetWindowRect(handleOf(window), &found) == FALSE) {
        return false;
    }
    rect = {static_cast<int32_t>(found.left), static_cast<int32_t>(found.top),
            static_cast<int32_t>(found.right), static_cast<int32_t>(found.bottom)};
    return true;
}

} // namespace

WindowCalls& windowCalls() {
    static WindowCalls calls = {
        runDialog,
        [](Window dialog, intptr_t result) { EndDialog(handleOf(dialog), result); },
        [](Window window) -> Window { return GetParent(handleOf(window)); },
        rectOf,
        [](Window window, int32_t x, int32_t y, int32_t width, int32_t height) {
            MoveWindow(handleOf(window), x, y, width, height, TRUE);
        },
        [](Window dialog, int32_t id) -> Window { return GetDlgItem(handleOf(dialog), id); },
        [](Window window, const char* text) { SetWindowTextA(handleOf(window), text); },
        [](Window window, bool enabled) { EnableWindow(handleOf(window), enabled ? TRUE : FALSE); },
    };
    return calls;
}

} // namespace kovalune::platform
