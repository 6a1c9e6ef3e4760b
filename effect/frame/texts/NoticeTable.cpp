#include "effect/frame/texts/NoticeTable.h"

#include <cstddef>
#include <iterator>

namespace kovalune {

const BilingualText NoticeTable[3] = {
    {"Kovalune", nullptr},
    {"Kovalune は平塗りの作画を領域ごとに柔らかくするエフェクトです。", nullptr},
    {"Kovalune", nullptr},
};

const char* noticeText(int id, LanguageChoice language) {
    const bool isRow = id >= 0 && static_cast<std::size_t>(id) < std::size(NoticeTable);
    return isRow ? NoticeTable[id].in(language) : "";
}

} // namespace kovalune
