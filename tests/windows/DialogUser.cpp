#include "tests/windows/DialogUser.h"

#include <utility>

namespace kovalune::test {
namespace {

constexpr UINT kMillisecondsBetweenLooks = 20;
constexpr int kLooksUntilStuck = 500;

DialogUser* current = nullptr;

BOOL CALLBACK takeDialog(HWND window, LPARAM found) {
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    // The class of all dialogs.
    if (std::wstring_view(name) != L"#32770" || IsWindowVisible(window) == FALSE) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

} // namespace

HWND dialogOfThread() {
    HWND found = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), takeDialog, reinterpret_cast<LPARAM>(&found));
    return found;
}

DialogUser::DialogUser(Act act) : act_(std::move(act)) {
    current = this;
    timer_ = SetTimer(nullptr, 0, kMillisecondsBetweenLooks, onTimer);
}

DialogUser::~DialogUser() {
    KillTimer(nullptr, timer_);
    current = nullptr;
}

void DialogUser::onTimer(HWND /*window*/, UINT /*message*/, UINT_PTR /*timer*/, DWORD /*time*/) {
    if (current != nullptr) {
        current->look();
    }
}

void DialogUser::look() {
    const HWND dialog = dialogOfThread();
    if (dialog == nullptr) {
        return;
    }
    if (!met_) {
        met_ = true;
        RedrawWindow(dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        act_(dialog);
    } else if (++looks_ == kLooksUntilStuck) {
        stuck_ = true;
        EndDialog(dialog, 0);
    }
}

void press(HWND dialog, int control) {
    SendMessageW(GetDlgItem(dialog, control), BM_CLICK, 0, 0);
}

void type(HWND dialog, WPARAM key) {
    const HWND focus = GetFocus();
    PostMessageW(focus != nullptr ? focus : dialog, WM_KEYDOWN, key, 0);
}

std::wstring textOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

} // namespace kovalune::test
