#include "effect/frame/OptionDialog.h"

#include "effect/frame/texts/Language.h"
#include "effect/frame/texts/NoticeTable.h"
#include "effect/params/DefaultsFile.h"
#include "effect/params/DefaultsStore.h"
#include "effect/params/FxOptionDlg/AEFxOptionDialog.h"
#include "effect/platform/Platform.h"
#include "effect/share/AEUtil/HostVersion.h"
#include "effect/share/AEUtil/SuiteHolder.h"
#include "effect/share/HostCode.h"

namespace kovalune {
namespace {

void* mainWindow(PF_InData* in) {
    void* window = nullptr;
    ignored(in->utils->get_platform_data(in->effect_ref, PF_PlatData_MAIN_WND, &window));
    return window;
}

void* moduleOfPlugIn(PF_InData* in) {
    char path[platform::kPathBytes] = {};
    ignored(in->utils->get_platform_data(in->effect_ref, PF_PlatData_EXE_FILE_PATH, path));
    path[platform::kPathBytes - 1] = '\0';
    return platform::moduleOfFile(path);
}

intptr_t runDialog(PF_InData* in) {
    void* const window = mainWindow(in);
    void* const module = moduleOfPlugIn(in);
    const LanguageChoice language = currentLanguage();
    FxOptionDlg::AEFxOptionDialog::Setting setting;
    setting.title = noticeText(kDialogTitle, language);
    setting.buttonsEnabled = !AEUtil::hostIsOld(in);
    setting.language = language;
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
    ignored(makeDefaultsPath(path));
    // Before forgetting too, which takes the folders away again where they are empty.
    ignored(makeDefaultsFolder(path));
    if (chosen == FxOptionDlg::kRememberChosen) {
        ignored(saveDefaults(params, path));
    } else if (chosen == FxOptionDlg::kForgetChosen) {
        ignored(removeDefaultsFile(path));
    }
}

} // namespace kovalune
