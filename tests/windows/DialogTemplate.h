// A dialog resource, read as bytes: the plain kind of template, with a font.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kovalune::test {

/// In dialog units.
struct DialogPlace {
    int16_t x;
    int16_t y;
    int16_t width;
    int16_t height;

    friend bool operator==(const DialogPlace&, const DialogPlace&) = default;
};

struct DialogControl {
    uint16_t id;
    std::string kind; ///< a class's name, or "#" and its number
    uint32_t type;    ///< the lowest bits of the style, which mean something else in each class
    DialogPlace place;
    std::string text; ///< or "#" and the number of a resource

    friend bool operator==(const DialogControl&, const DialogControl&) = default;
};

struct DialogTemplate {
    DialogPlace place;
    std::string title;
    uint16_t points;
    std::string font;
    std::vector<DialogControl> controls;
};

/// Throws std::runtime_error for a template of another kind and for a damaged one.
DialogTemplate readDialogTemplate(std::span<const uint8_t> bytes);

} // namespace kovalune::test
