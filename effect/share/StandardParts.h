// Parts of C++20's library that the libraries of some systems lack, one header for all of them and for every room: casts of bits,
// access to a byte that threads share, numbers with a point as text. Where the library has the last, it is the library's own.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <version>

namespace kovalune {

/// The value of another type with the same bytes.
template <class To, class From>
[[nodiscard]] constexpr To bitCast(const From& from) noexcept {
    static_assert(sizeof(To) == sizeof(From));
    static_assert(std::is_trivially_copyable_v<To> && std::is_trivially_copyable_v<From>);
    return __builtin_bit_cast(To, from);
}

/// Of what other threads may read and write at the same time, in no order with anything else.
template <class Value>
[[nodiscard]] Value loadRelaxed(const Value& value) noexcept {
    return __atomic_load_n(&value, __ATOMIC_RELAXED);
}

template <class Value>
void storeRelaxed(Value& value, std::type_identity_t<Value> wanted) noexcept {
    __atomic_store_n(&value, wanted, __ATOMIC_RELAXED);
}

/// Numbers as text by what every C library has; tests hold them beside the library's.
namespace plainchars {

#if defined(_WIN32)

/// There the library has its own, and these are not used.
class PointScope {};

#else

/// A point in numbers on this thread, whatever locale the program or its host has set.
class PointScope {
public:
    PointScope() : previous_(uselocale(plain())) {}
    ~PointScope() { uselocale(previous_); }
    PointScope(const PointScope&) = delete;
    PointScope& operator=(const PointScope&) = delete;

private:
    /// Kept to the end of the program. Null for want of memory, which then changes nothing.
    static locale_t plain() {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }

    const locale_t previous_;
};

#endif

/// The beginning of the text that is a number as std::from_chars takes it.
inline std::string_view numberIn(std::string_view text) {
    const auto isDigit = [](char letter) { return letter >= '0' && letter <= '9'; };
    const auto lower = [&](std::size_t at) { return static_cast<char>(text[at] | 0x20); };
    std::size_t at = text.starts_with('-') ? 1 : 0;
    for (const std::string_view word : {"infinity", "inf", "nan"}) {
        std::size_t same = 0;
        while (same < word.size() && at + same < text.size() && lower(at + same) == word[same]) {
            ++same;
        }
        if (same == word.size()) {
            return text.substr(0, at + same);
        }
    }
    const std::size_t first = at;
    std::size_t digits = 0;
    for (bool hasPoint = false; at < text.size() && (isDigit(text[at]) || (text[at] == '.' && !hasPoint));
         ++at) {
        hasPoint = hasPoint || text[at] == '.';
        digits += isDigit(text[at]) ? 1U : 0U;
    }
    if (digits == 0) {
        return text.substr(first, 0);
    }
    std::size_t power = at;
    if (power < text.size() && lower(power) == 'e') {
        ++power;
        power += power < text.size() && (text[power] == '-' || text[power] == '+') ? 1U : 0U;
        if (power < text.size() && isDigit(text[power])) {
            at = power;
            while (at < text.size() && isDigit(text[at])) {
                ++at;
            }
        }
    }
    return text.substr(0, at);
}

template <class Number>
Number numberOf(const char* text) {
    [[maybe_unused]] const PointScope point;
    if constexpr (std::is_same_v<Number, float>) {
        return std::strtof(text, nullptr);
    } else {
        return std::strtod(text, nullptr);
    }
}

template <class Number>
std::from_chars_result fromChars(const char* first, const char* last, Number& number) {
    const std::string text(numberIn({first, static_cast<std::size_t>(last - first)}));
    if (text.empty()) {
        return {first, std::errc::invalid_argument};
    }
    const char* const end = first + text.size();
    const auto read = numberOf<Number>(text.c_str());
    const bool isWord = text.find_first_of("nN") != std::string::npos;
    const bool isZero =
        text.substr(0, text.find_first_of("eE")).find_first_of("123456789") == std::string::npos;
    if (!isWord && (std::isinf(read) || (read == 0 && !isZero))) {
        return {end, std::errc::result_out_of_range};
    }
    number = read;
    return {end, std::errc()};
}

inline std::to_chars_result put(char* first, char* last, std::string_view text) {
    if (static_cast<std::size_t>(last - first) < text.size()) {
        return {last, std::errc::value_too_large};
    }
    return {std::copy(text.begin(), text.end(), first), std::errc()};
}

/// By printf's %f, %e or %g.
inline std::string printed(char conversion, int precision, double number) {
    std::array<char, 512>
        letters{}; // a double has at most 309 digits before the point, and callers want few after it
    const std::array<char, 5> format{'%', '.', '*', conversion, '\0'};
    [[maybe_unused]] const PointScope point;
    const int length = std::snprintf(letters.data(), letters.size(), format.data(), precision, number);
    return {letters.data(), std::min(static_cast<std::size_t>(length), letters.size() - 1)};
}

inline char conversionOf(std::chars_format format) {
    return format == std::chars_format::fixed ? 'f' : format == std::chars_format::scientific ? 'e' : 'g';
}

template <class Number>
std::to_chars_result toChars(char* first, char* last, Number number, std::chars_format format,
                             int precision) {
    if (std::isnan(number)) {
        return put(first, last, std::signbit(number) ? "-nan" : "nan");
    }
    return put(first, last, printed(conversionOf(format), precision, static_cast<double>(number)));
}

/// The next larger number of as many digits; as it is where that has fewer.
inline std::string oneMore(std::string scientific) {
    std::string unchanged = scientific;
    for (std::size_t at = scientific.find('e'); at-- > 0;) {
        if (scientific[at] == '9') {
            scientific[at] = '0';
        } else if (scientific[at] != '.') {
            const bool isDigit = scientific[at] != '-';
            scientific[at] = static_cast<char>(scientific[at] + (isDigit ? 1 : 0));
            return isDigit ? scientific : unchanged;
        }
    }
    return unchanged;
}

/// With an exponent, and the fewest digits that read back as the same number.
template <class Number>
std::string shortestScientific(Number number) {
    std::string text;
    for (int digits = 0; digits < std::numeric_limits<Number>::max_digits10; ++digits) {
        text = printed('e', digits, static_cast<double>(number));
        if (numberOf<Number>(text.c_str()) == number) {
            break;
        }
        // Below a power of two numbers are twice as dense: what lies further off above it can still be its own.
        std::string above = oneMore(text);
        if (numberOf<Number>(above.c_str()) == number) {
            return above;
        }
    }
    return text;
}

/// The same digits without an exponent; whole numbers that are large have all of theirs.
template <class Number>
std::string shortestFixed(Number number, const std::string& scientific) {
    const std::size_t e = scientific.find('e');
    const int power = std::atoi(scientific.c_str() + e + 1);
    std::string digits = scientific.substr(0, e);
    std::erase_if(digits, [](char letter) { return letter == '.' || letter == '-'; });
    const int places = static_cast<int>(digits.size()) - 1 - power;
    if (places <= 0) {
        return printed('f', 0, static_cast<double>(number));
    }
    if (power < 0) {
        digits.insert(0, static_cast<std::size_t>(-power), '0');
    }
    digits.insert(digits.size() - static_cast<std::size_t>(places), ".");
    return (std::signbit(number) ? "-" : "") + digits;
}

template <class Number>
std::to_chars_result toChars(char* first, char* last, Number number, std::chars_format format) {
    if (!std::isfinite(number)) {
        return toChars(first, last, number, format, 0);
    }
    const std::string scientific = shortestScientific(number);
    return put(first, last,
               format == std::chars_format::fixed ? shortestFixed(number, scientific) : scientific);
}

/// The shorter of both forms, without an exponent if they are equally long.
template <class Number>
std::to_chars_result toChars(char* first, char* last, Number number) {
    if (!std::isfinite(number)) {
        return toChars(first, last, number, std::chars_format::general, 0);
    }
    const std::string scientific = shortestScientific(number);
    const std::string fixed = shortestFixed(number, scientific);
    return put(first, last, fixed.size() <= scientific.size() ? fixed : scientific);
}

} // namespace plainchars

/// As std::from_chars reads a number.
template <class Number>
std::from_chars_result fromChars(const char* first, const char* last, Number& number) {
#ifdef __cpp_lib_to_chars
    constexpr bool kLibraryReads = true;
#else
    constexpr bool kLibraryReads = std::is_integral_v<Number>;
#endif
    if constexpr (kLibraryReads) {
        return std::from_chars(first, last, number);
    } else {
        return plainchars::fromChars(first, last, number);
    }
}

/// As std::to_chars writes a float or double: in its shortest form, or in that of `form`, a format and perhaps a precision.
template <class Number, class... Form>
std::to_chars_result toChars(char* first, char* last, Number number, Form... form) {
#ifdef __cpp_lib_to_chars
    return std::to_chars(first, last, number, form...);
#else
    return plainchars::toChars(first, last, number, form...);
#endif
}

} // namespace kovalune
