// The effect's one dialog: a button that makes the current settings the defaults of new instances, and one that forgets
// them. Each ends the dialog at once; what it asks for follows on the dialog's result.
#pragma once

#include "effect/params/FxOptionDlg/DialogBase.h"
#include "effect/share/Language.h"

namespace FxOptionDlg {

inline constexpr uint16_t kOptionDialogResource = 201;

// Controls; the resource has the same numbers. Those of OK and Cancel are the system's.
inline constexpr uint16_t kOkControl = 1;
inline constexpr uint16_t kCancelControl = 2;
inline constexpr uint16_t kGroupControl = 2000;
inline constexpr uint16_t kRememberControl = 2001;
inline constexpr uint16_t kForgetControl = 2002;

// Results of the dialog.
inline constexpr intptr_t kNothingChosen = 0;
inline constexpr intptr_t kRememberChosen = 1;
inline constexpr intptr_t kForgetChosen = 2;

class AEFxOptionDialog final : public DialogBase {
public:
    struct Setting {
        const char* title = "";     ///< cut to 255 bytes
        bool buttonsEnabled = true; ///< else the two are greyed out, and nothing can be chosen
        kovalune::LanguageChoice language = kovalune::LanguageChoice::kByCodePage;
    };
    AEFxOptionDialog(void* module, Window parent, const Setting& setting);

    /// The result; kNothingChosen also where the dialog could not be shown.
    intptr_t doModal() override;
    intptr_t onInitDialog(Window window, uintptr_t word) override;
    intptr_t onCommand(Window window, uint16_t notifyCode, uint16_t id, intptr_t control) override;

private:
    char title_[256] = {};
    bool buttonsEnabled_;
    kovalune::LanguageChoice language_;
};

} // namespace FxOptionDlg
