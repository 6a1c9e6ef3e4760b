// The short texts that the effect shows in its about box and dialog.
#pragma once

#include "effect/frame/Language.h"

namespace kovalune {

struct NoticeRow {
    const char* japanese;
    const char* english; ///< null: there is none
};

/// In the code page that the system's narrow texts have: 932 on Windows, UTF-8 elsewhere.
extern const NoticeRow NoticeTable[3];

inline constexpr int kAboutNotice = 1;
inline constexpr int kDialogTitle = 2;

/// The text of a row: the Japanese one for Japanese, or the English one where there is none; the English one
/// for English, where both exist. Else an empty text, as for an unknown id.
const char* noticeText(int id, LanguageChoice language);

} // namespace kovalune
