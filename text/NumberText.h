// Numbers as text with a decimal point, whatever the locale. Infinities are "inf" and "-inf", NaN is "nan".
#pragma once

#include <string>

namespace kovalune::text {

/// With so many digits after the point.
std::string fixedText(double number, int digits);

/// The shortest text that reads back as the same number.
std::string shortestText(float number);
std::string shortestText(double number);

/// To so many significant digits, without zeros at the end.
std::string roundedText(double number, int digits);

} // namespace kovalune::text
