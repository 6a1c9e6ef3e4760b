#include "tests/windows/DialogTemplate.h"

#include "tests/windows/PeFile.h"

#include <cstddef>
#include <stdexcept>

namespace kovalune::test {
namespace {

constexpr uint32_t kHasFont = 0x40;
constexpr uint32_t kTypeBits = 0xF;

/// Reads on through the template; texts are of two bytes a letter.
class Reader {
public:
    explicit Reader(std::span<const uint8_t> bytes) : bytes_(bytes) {}

    uint16_t number16() {
        const uint16_t value = word16(bytes_, position_);
        position_ += 2;
        return value;
    }
    uint32_t number32() {
        const uint32_t value = word32(bytes_, position_);
        position_ += 4;
        return value;
    }
    DialogPlace place() {
        const auto next = [this] { return static_cast<int16_t>(number16()); };
        const int16_t x = next();
        const int16_t y = next();
        const int16_t width = next();
        return {x, y, width, next()};
    }
    /// "#" and a number, if a number stands there.
    std::string text() {
        uint16_t letter = number16();
        if (letter == 0xFFFF) {
            return '#' + std::to_string(number16());
        }
        std::string result;
        for (; letter != 0; letter = number16()) {
            result.push_back(letter < 128 ? static_cast<char>(letter) : '?');
        }
        return result;
    }
    void align() { position_ = (position_ + 3) / 4 * 4; }

private:
    std::span<const uint8_t> bytes_;
    std::size_t position_ = 0;
};

DialogControl readControl(Reader& reader) {
    reader.align();
    DialogControl control = {};
    control.type = reader.number32() & kTypeBits;
    reader.number32(); // further styles
    control.place = reader.place();
    control.id = reader.number16();
    control.kind = reader.text();
    control.text = reader.text();
    if (reader.number16() != 0) {
        throw std::runtime_error("a control with data of its own");
    }
    return control;
}

} // namespace

DialogTemplate readDialogTemplate(std::span<const uint8_t> bytes) {
    Reader reader(bytes);
    const uint32_t style = reader.number32();
    if (style >> 16 == 0xFFFF || (style & kHasFont) == 0) {
        throw std::runtime_error("not a plain dialog with a font");
    }
    reader.number32(); // further styles
    const uint16_t count = reader.number16();
    DialogTemplate dialog = {};
    dialog.place = reader.place();
    reader.text(); // menu
    reader.text(); // window class
    dialog.title = reader.text();
    dialog.points = reader.number16();
    dialog.font = reader.text();
    for (uint16_t i = 0; i < count; ++i) {
        dialog.controls.push_back(readControl(reader));
    }
    return dialog;
}

} // namespace kovalune::test
