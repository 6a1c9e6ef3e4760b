// The short texts that the effect shows in its about box and dialog.
#pragma once

#include "effect/frame/Language.h"

#include <cstddef>

namespace kovalune {

struct NoticeRow {
    const char* japanese;
    const char* english; ///< null: there is none
};

inline constexpr NoticeRow NoticeTable[] = {
    {"Kovalune", nullptr},
    {"Kovalune は平塗りの作画を領域ごとに柔らかくするエフェクトです。", nullptr},
    {"Kovalune", nullptr},
};

inline constexpr int kAboutNotice = 1;

/// The text of a row: the Japanese one for Japanese, or the English one where there is none; the English one
/// for English, where both exist. Else an empty text, as for an unknown id.
inline const char* noticeText(int id, LanguageChoice language) {
    if (id < 0 || static_cast<std::size_t>(id) >= sizeof NoticeTable / sizeof *NoticeTable) {
        return "";
    }
    const NoticeRow& row = NoticeTable[id];
    const char* const inEnglish = row.japanese != nullptr ? row.english : nullptr;
    const char* const inJapanese = row.japanese != nullptr ? row.japanese : row.english;
    const char* const text = language == LanguageChoice::kJapanese ? inJapanese : inEnglish;
    return text != nullptr ? text : "";
}

} // namespace kovalune
