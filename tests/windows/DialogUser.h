// Somebody in front of the screen: does something in the first dialog that this thread shows, inside the dialog's own
// message loop, and closes it in the end.
#pragma once

#include <functional>
#include <string>
#include <windows.h>

namespace kovalune::test {

/// One at a time. Waits from its construction to its destruction.
class DialogUser {
public:
    using Act = std::function<void(HWND dialog)>;

    /// `act` runs once, as soon as the dialog is on the screen and painted. It may press, type and look.
    explicit DialogUser(Act act);
    ~DialogUser();
    DialogUser(const DialogUser&) = delete;
    DialogUser& operator=(const DialogUser&) = delete;

    /// Whether there was a dialog.
    bool metOne() const { return met_; }
    /// Whether the dialog was still there long after what was done in it, and had to be ended by force.
    bool wasStuck() const { return stuck_; }

private:
    static void CALLBACK onTimer(HWND window, UINT message, UINT_PTR timer, DWORD time);
    void look();

    Act act_;
    UINT_PTR timer_ = 0;
    int looks_ = 0; ///< at the dialog, since `act` has run
    bool met_ = false;
    bool stuck_ = false;
};

/// The dialog that this thread shows now, or null.
HWND dialogOfThread();

/// Clicks on a control.
void press(HWND dialog, int control);

/// Presses a key where the dialog's focus is.
void type(HWND dialog, WPARAM key);

std::wstring textOf(HWND window);

} // namespace kovalune::test
