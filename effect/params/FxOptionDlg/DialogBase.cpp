#include "effect/params/FxOptionDlg/DialogBase.h"

#include <functional>
#include <map>
#include <memory>

namespace FxOptionDlg {
namespace {

using kovalune::platform::DialogRequest;
using kovalune::platform::windowCalls;
using kovalune::platform::WindowRect;
using DialogMap = std::map<Window, DialogBase*, std::less<>>;

/// Null until the first dialog.
std::unique_ptr<DialogMap>& dialogMap() {
    static std::unique_ptr<DialogMap> map;
    return map;
}

void store(Window window, DialogBase* dialog) {
    if (!dialogMap()) {
        dialogMap() = std::make_unique<DialogMap>();
    }
    (*dialogMap())[window] = dialog;
}

/// Null for a window that is not in the map, or whose dialog is gone.
DialogBase* find(Window window) {
    if (!dialogMap()) {
        return nullptr;
    }
    const auto found = dialogMap()->find(window);
    return found != dialogMap()->end() ? found->second : nullptr;
}

uint16_t lowHalf(uintptr_t word) {
    return static_cast<uint16_t>(word & 0xFFFFU);
}

uint16_t highHalf(uintptr_t word) {
    return static_cast<uint16_t>((word >> 16) & 0xFFFFU);
}

intptr_t answer(Window window, uint32_t message, uintptr_t word, intptr_t longWord) {
    namespace platform = kovalune::platform;
    if (message == platform::kMessageInitDialog) {
        // The object that doModal asked with.
        // NOLINTNEXTLINE(performance-no-int-to-ptr): a message has no other room for it
        store(window, reinterpret_cast<DialogBase*>(longWord));
    }
    DialogBase* const dialog = find(window);
    if (dialog == nullptr) {
        return 0;
    }
    switch (message) {
    case platform::kMessageInitDialog:
        return dialog->onInitDialog(window, word);
    case platform::kMessageCommand:
        return dialog->onCommand(window, highHalf(word), lowHalf(word), longWord);
    case platform::kMessageNotify:
        return dialog->onNotify(window, word, longWord);
    case platform::kMessageDestroy:
        return dialog->onDestroy(window);
    case platform::kMessageClose:
        return dialog->onClose(window);
    default:
        return 0;
    }
}

} // namespace

DialogBase::~DialogBase() {
    if (dialogMap()) {
        for (auto& [window, dialog] : *dialogMap()) {
            dialog = dialog == this ? nullptr : dialog;
        }
    }
}

intptr_t DialogBase::doModal() {
    DialogRequest request;
    request.module = module_;
    request.resource = resource_;
    request.parent = parent_;
    request.procedure = dialogProcedure;
    request.object = this;
    return windowCalls().runDialog(request);
}

intptr_t DialogBase::onInitDialog(Window /*window*/, uintptr_t /*word*/) {
    return 1;
}

intptr_t DialogBase::onCommand(Window /*window*/, uint16_t /*notifyCode*/, uint16_t /*id*/,
                               intptr_t /*control*/) {
    return 1;
}

intptr_t DialogBase::onNotify(Window /*window*/, uintptr_t /*word*/, intptr_t /*longWord*/) {
    return 0;
}

intptr_t DialogBase::onClose(Window window) {
    windowCalls().endDialog(window, 0);
    return 1;
}

intptr_t DialogBase::onDestroy(Window /*window*/) {
    return 1;
}

void DialogBase::centerWindow(Window window) {
    WindowRect own;
    WindowRect parent;
    if (!windowCalls().rectOf(window, own) || !windowCalls().rectOf(windowCalls().parentOf(window), parent)) {
        return;
    }
    const int32_t x = (parent.left + parent.right + own.left - own.right) / 2;
    const int32_t y = (parent.top + parent.bottom + own.top - own.bottom) / 2;
    windowCalls().move(window, x, y, own.right - own.left, own.bottom - own.top);
}

void DialogBase::setWindowText(Window window, const char* text) {
    windowCalls().setText(window, text);
}

intptr_t dialogProcedure(Window window, uint32_t message, uintptr_t word, intptr_t longWord) {
    // No exception may pass through the window system that calls this.
    try {
        return answer(window, message, word, longWord);
    } catch (...) {
        windowCalls().endDialog(window, kNotShown);
        return 0;
    }
}

int32_t dialogMapSize() {
    return dialogMap() ? static_cast<int32_t>(dialogMap()->size()) : 0;
}

void freeDialogMap() {
    dialogMap().reset();
}

} // namespace FxOptionDlg
