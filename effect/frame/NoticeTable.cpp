#include "effect/frame/NoticeTable.h"

#include <cstddef>

namespace kovalune {

const NoticeRow NoticeTable[3] = {
    {"Kovalune", nullptr},
    {"Kovalune は平塗りの作画を領域ごとに柔らかくするエフェクトです。", nullptr},
    {"Kovalune", nullptr},
};

const char* noticeText(int id, LanguageChoice language) {
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
