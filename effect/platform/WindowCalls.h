// What a dialog asks of the window system, as a table of functions. Systems without one have a table that shows
// nothing; a test puts its own in place and drives the dialog's code by hand.
#pragma once

#include <cstdint>

namespace kovalune::platform {

/// A window of the system, and of a dialog's controls.
using Window = void*;

struct WindowRect {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;
};

/// Gets every message of a dialog; the words are the system's.
using DialogProcedure = intptr_t (*)(Window window, uint32_t message, uintptr_t word, intptr_t longWord);

// Windows' numbers of the messages that dialogs here know.
inline constexpr uint32_t kMessageDestroy = 2;
inline constexpr uint32_t kMessageClose = 16;
inline constexpr uint32_t kMessageNotify = 78;
inline constexpr uint32_t kMessageInitDialog = 272;
inline constexpr uint32_t kMessageCommand = 273;

struct DialogRequest {
    void* module = nullptr; ///< in whose file the resource is
    uint16_t resource = 0;
    Window parent = nullptr;
    DialogProcedure procedure = nullptr;
    void* object = nullptr; ///< the last word of the first message, kMessageInitDialog
};

/// All calls bear a null window and do nothing then.
struct WindowCalls {
    /// Returns when the dialog has ended: its result, -1 where it could not be shown.
    intptr_t (*runDialog)(const DialogRequest& request);
    void (*endDialog)(Window dialog, intptr_t result);
    Window (*parentOf)(Window window);
    /// In the screen's coordinates. False, and nothing written, if there is no such window.
    bool (*rectOf)(Window window, WindowRect& rect);
    /// With its new size drawn at once.
    void (*move)(Window window, int32_t x, int32_t y, int32_t width, int32_t height);
    Window (*control)(Window dialog, int32_t id);
    void (*setText)(Window window, const char* text);
    void (*enable)(Window window, bool enabled);
};

/// The table in use: the system's own, unless something else was put there.
WindowCalls& windowCalls();

} // namespace kovalune::platform
