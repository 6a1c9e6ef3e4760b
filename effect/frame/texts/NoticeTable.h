// The short texts that the effect shows in its about box and dialog.
#pragma once

#include "effect/share/Language.h"

namespace kovalune {

extern const BilingualText NoticeTable[3];

inline constexpr int kAboutNotice = 1;
inline constexpr int kDialogTitle = 2;

/// The text of a row; empty for an unknown id.
const char* noticeText(int id, LanguageChoice language);

} // namespace kovalune
