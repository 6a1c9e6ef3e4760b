#include "effect/frame/OptionDialog.h"

#include "effect/frame/Language.h"
#include "effect/frame/NoticeTable.h"
#include "effect/params/DefaultsFile.h"
#include "effect/params/DefaultsStore.h"
#include "effect/params/FxOptionDlg/AEFxOptionDialog.h"
#include "effect/params/FxOptionDlg/DialogText.h"
#include "effect/platform/Platform.h"
#include "effect/share/AEUtil/HostVersion.h"
#include "effect/share/AEUtil/SuiteHolder.h"

#include <cstddef>

namespace kovalune {
namespace {

/// The room that a host has for a path.
constexpr std::size_t kPathBytes = 260;

void* mainWindow(PF_InData* in) {
    void* window = nullptr;
    in->utils->get_platform_data(in->effect_ref, PF_PlatData_MAIN_WND, &window);
    return window;
}

void* moduleOfPlugIn(PF_InData* in) {
    char path[kPathBytes] = {};
    in->utils->get_platform_data(in->effect_ref, PF_PlatData_EXE_FILE_PATH, path);
    path[kPathBytes - 1] = '\0';
    return platform::moduleOfFile(path);
}

intptr_t runDialog(PF_InData* in) {
    void* const window = mainWindow(in);
    void* const module = moduleOfPlugIn(in);
    const LanguageChoice language = currentLanguage();
    FxOptionDlg::AEFxOptionDialog::Setting setting;
    setting.title = noticeText(kDialogTitle, language);
    setting.buttonsEnabled = !AEUtil::hostIsOld(in);
    setting.language = language == LanguageChoice::kJapanese ? FxOptionDlg::kLanguageJapanese
                                                             : FxOptionDlg::kLanguageEnglish;
    return FxOptionDlg::AEFxOptionDialog(module, window, setting).doModal();
}

} // namespace

void showOptionDialog(PF_InData* in, PF_ParamDef** params) {
    AEUtil::requireBasicSuite(in->pica_basicP);
    const intptr_t chosen = runDialog(in);
    if (chosen == FxOptionDlg::kNothingChosen) {
        return;
    }
    char path[kDefaultsPathBytes];
    makeDefaultsPath(path);
    // Before forgetting too, which takes the folders away again where they are empty.
    makeDefaultsFolder(path);
    if (chosen == FxOptionDlg::kRememberChosen) {
        saveDefaults(params, path);
    } else if (chosen == FxOptionDlg::kForgetChosen) {
        removeDefaultsFile(path);
    }
}

} // namespace kovalune
