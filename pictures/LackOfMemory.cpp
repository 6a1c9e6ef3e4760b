#include "pictures/LackOfMemory.h"

#include <algorithm>

namespace kovalune::pictures {

namespace {

char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool holds(std::string_view text, std::string_view word) {
    return std::search(text.begin(), text.end(), word.begin(), word.end(),
                       [](char a, char b) { return lowered(a) == b; }) != text.end();
}

} // namespace

bool tellsOfMemory(std::string_view text) noexcept {
    constexpr std::string_view kWords[] = {"allocate", "insufficient memory", "no space for",
                                           "not enough memory", "out of memory"};
    return std::any_of(std::begin(kWords), std::end(kWords),
                       [text](std::string_view word) { return holds(text, word); });
}

} // namespace kovalune::pictures
