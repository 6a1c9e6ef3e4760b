#include "effect/params/FxOptionDlg/AEFxOptionDialog.h"

#include "effect/params/FxOptionDlg/DialogText.h"

#include <cstring>

namespace FxOptionDlg {

using kovalune::platform::windowCalls;

AEFxOptionDialog::AEFxOptionDialog(void* module, Window parent, const Setting& setting)
    : DialogBase(module, parent, kOptionDialogResource), buttonsEnabled_(setting.buttonsEnabled),
      language_(setting.language) {
    std::strncpy(title_, setting.title, sizeof title_ - 1);
}

intptr_t AEFxOptionDialog::doModal() {
    const intptr_t result = DialogBase::doModal();
    return result == kNotShown ? kNothingChosen : result;
}

intptr_t AEFxOptionDialog::onInitDialog(Window window, uintptr_t /*word*/) {
    setWindowText(window, title_);
    centerWindow(window);
    const uint16_t rows[] = {kGroupControl, kRememberControl, kForgetControl};
    for (int32_t row = 0; row < 3; ++row) {
        setWindowText(windowCalls().control(window, rows[row]), dialogText(row, language_));
    }
    if (!buttonsEnabled_) {
        windowCalls().enable(windowCalls().control(window, kRememberControl), false);
        windowCalls().enable(windowCalls().control(window, kForgetControl), false);
    }
    return 0;
}

intptr_t AEFxOptionDialog::onCommand(Window window, uint16_t /*notifyCode*/, uint16_t id,
                                     intptr_t /*control*/) {
    switch (id) {
    case kOkControl:
    case kCancelControl:
        windowCalls().endDialog(window, kNothingChosen);
        break;
    case kRememberControl:
        windowCalls().endDialog(window, kRememberChosen);
        break;
    case kForgetControl:
        windowCalls().endDialog(window, kForgetChosen);
        break;
    default:
        break;
    }
    return 1;
}

} // namespace FxOptionDlg
