#include "effect/params/FxOptionDlg/DialogText.h"

namespace FxOptionDlg {
namespace {

struct DialogTextRow {
    int32_t id;
    kovalune::BilingualText text;
};

constexpr DialogTextRow DialogTextTable[] = {
    {0, {"設定 （次回起動から有効になります）", "Settings (Valid from next start-up)"}},
    {1, {"現在のパラメータ設定をデフォルト値として記憶する", "Set current parameter values to default"}},
    {2, {"パラメータのデフォルト値設定を初期状態に復帰する", "Restore initial default parameter values"}},
};

} // namespace

const char* dialogText(int32_t row, kovalune::LanguageChoice language) {
    for (const DialogTextRow& each : DialogTextTable) {
        if (each.id == row) {
            return each.text.in(language);
        }
    }
    return "";
}

} // namespace FxOptionDlg
