// A modal dialog made from a resource of the plug-in's file, and the procedure that all such dialogs share: it finds a
// window's dialog object in a process-wide map and calls its operation. What the window system does for it goes
// through platform/WindowCalls.h.
#pragma once

#include "effect/platform/WindowCalls.h"

#include <cstdint>

namespace FxOptionDlg {

using kovalune::platform::Window;

/// The result of a dialog that could not be shown, or not to its end.
inline constexpr intptr_t kNotShown = -1;

class DialogBase {
public:
    /// The dialog's resource is looked for in the file of `module`.
    DialogBase(void* module, Window parent, uint16_t resource)
        : module_(module), parent_(parent), resource_(resource) {}
    /// The map's entries of this dialog stay, without an object.
    virtual ~DialogBase();
    DialogBase(const DialogBase&) = delete;
    DialogBase& operator=(const DialogBase&) = delete;

    /// Shows the dialog until it ends. Its result, or kNotShown.
    virtual intptr_t doModal();

    // One operation a message; what they return is the procedure's answer to the system.
    virtual intptr_t onInitDialog(Window window, uintptr_t word);
    virtual intptr_t onCommand(Window window, uint16_t notifyCode, uint16_t id, intptr_t control);
    virtual intptr_t onNotify(Window window, uintptr_t word, intptr_t longWord);
    virtual intptr_t onClose(Window window);
    virtual intptr_t onDestroy(Window window);

    /// Moves the window to the middle of its parent; without one it stays where it is.
    virtual void centerWindow(Window window);
    virtual void setWindowText(Window window, const char* text);

private:
    void* module_;
    Window parent_;
    uint16_t resource_;
};

/// Answers every message of every dialog, 0 for those that no operation is for and for windows without an object. An
/// operation that throws ends its dialog with kNotShown.
intptr_t dialogProcedure(Window window, uint32_t message, uintptr_t word, intptr_t longWord);

/// Windows with an entry in the dialog map. An entry stays when its dialog ends: the system may use the number again.
int32_t dialogMapSize();

/// When the library is unloaded; the next dialog would make another map.
void freeDialogMap();

} // namespace FxOptionDlg
