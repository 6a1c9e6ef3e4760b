#include "text/NumberText.h"

#include "effect/share/StandardParts.h"

#include <array>
#include <cmath>

namespace kovalune::text {

namespace {

/// Room for the largest double with all its digits before the point.
using Letters = std::array<char, 384>;

template <class Number, class... Form>
std::string written(Number number, Form... form) {
    if (std::isnan(number)) {
        return "nan";
    }
    Letters letters{};
    const auto end = toChars(letters.data(), letters.data() + letters.size(), number, form...);
    return {letters.data(), end.ptr};
}

} // namespace

std::string fixedText(double number, int digits) {
    return written(number, std::chars_format::fixed, digits);
}

std::string shortestText(float number) {
    return written(number);
}

std::string shortestText(double number) {
    return written(number);
}

std::string roundedText(double number, int digits) {
    return written(number, std::chars_format::general, digits);
}

} // namespace kovalune::text
