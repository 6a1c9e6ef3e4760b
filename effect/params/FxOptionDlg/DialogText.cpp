#include "effect/params/FxOptionDlg/DialogText.h"

#include "effect/platform/Platform.h"

#include <cstddef>

namespace FxOptionDlg {
namespace {

constexpr unsigned kJapaneseCodePage = 932;

struct DialogTextRow {
    int32_t id;
    const char* japanese; ///< null: there is none
    const char* english;  ///< likewise
};

constexpr DialogTextRow DialogTextTable[] = {
    {0, "設定 （次回起動から有効になります）", "Settings (Valid from next start-up)"},
    {1, "現在のパラメータ設定をデフォルト値として記憶する", "Set current parameter values to default"},
    {2, "パラメータのデフォルト値設定を初期状態に復帰する", "Restore initial default parameter values"},
};

const char* textOf(const DialogTextRow& row, int32_t language) {
    switch (language) {
    case kLanguageByCodePage:
        return textOf(row, kovalune::platform::activeCodePage() == kJapaneseCodePage ? kLanguageJapanese
                                                                                     : kLanguageEnglish);
    case kLanguageJapanese:
        return row.japanese != nullptr ? row.japanese : row.english;
    case kLanguageEnglish:
        return row.japanese != nullptr ? row.english : nullptr;
    default:
        return nullptr;
    }
}

} // namespace

const char* dialogText(int32_t row, int32_t language) {
    for (const DialogTextRow& each : DialogTextTable) {
        if (each.id == row) {
            const char* const text = textOf(each, language);
            return text != nullptr ? text : "";
        }
    }
    return "";
}

} // namespace FxOptionDlg
