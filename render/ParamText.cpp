#include "render/ParamText.h"

#include "effect/share/StandardParts.h"
#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <system_error>

namespace kovalune::render {

namespace {

constexpr std::string_view kSeparatorStart = "(-";

enum class Form { kGood, kWrong, kTooLarge };

/// Of a decimal number that no double can hold: whether it is too near to 0 rather than too far from it.
bool isTiny(std::string_view text) {
    const std::size_t e = text.find_first_of("eE");
    const std::string_view digits = text.substr(0, e);
    const auto point = static_cast<int64_t>(std::min(digits.find('.'), digits.size()));
    const auto first = static_cast<int64_t>(digits.find_first_of("123456789"));
    std::string_view power = e == std::string_view::npos ? std::string_view("0") : text.substr(e + 1);
    if (power.starts_with('+')) {
        power.remove_prefix(1);
    }
    int64_t exponent = 0;
    const auto [stop, error] = std::from_chars(power.data(), power.data() + power.size(), exponent);
    if (error == std::errc::result_out_of_range) {
        return power.starts_with('-');
    }
    const int64_t place = first < point ? point - first - 1 : point - first;
    // No text is so long that its digits would outweigh this.
    constexpr int64_t kFar = int64_t{1} << 60;
    return std::clamp(exponent, -kFar, kFar) + place < 0;
}

/// The whole text must be the number.
template <class Number>
Form parseNumber(std::string_view text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = fromChars(text.data(), end, number);
    if (stop != end || text.empty() || error == std::errc::invalid_argument) {
        return Form::kWrong;
    }
    return error == std::errc::result_out_of_range ? Form::kTooLarge : Form::kGood;
}

/// `number` in its shortest form that reads back the same, without an exponent.
std::string numberText(float number) {
    std::array<char, 64> letters{};
    const auto end =
        toChars(letters.data(), letters.data() + letters.size(), number, std::chars_format::fixed);
    return {letters.data(), end.ptr};
}

[[noreturn]] void failForm(const PF_ParamDef& def, const std::string& wanted, std::string_view text) {
    throw text::Failure(text::FailureKind::kUsage,
                        text::inQuotes(def.name) + " takes " + wanted + ", not " + text::inQuotes(text));
}

[[noreturn]] void failRange(const PF_ParamDef& def, std::string_view text, const std::string& range) {
    throw text::Failure(text::FailureKind::kUsage, text::inQuotes(def.name) + " cannot be " +
                                                       text::shown(text) + ": its valid range is " + range);
}

host::ParamValue parseSlider(const PF_ParamDef& def, std::string_view text) {
    A_long number = 0;
    const Form form = parseNumber(text, number);
    if (form == Form::kWrong) {
        failForm(def, "a whole number", text);
    }
    if (form == Form::kTooLarge || number < def.u.sd.valid_min || number > def.u.sd.valid_max) {
        failRange(def, text, rangeText(def, {}));
    }
    return number;
}

host::ParamValue parseFloatSlider(const PF_ParamDef& def, std::string_view text) {
    double number = 0.0;
    Form form = parseNumber(text, number);
    if (form == Form::kTooLarge && isTiny(text)) {
        form = Form::kGood;
        number = 0.0;
    }
    if (form == Form::kWrong || std::isnan(number)) {
        failForm(def, "a number", text);
    }
    const auto least = static_cast<double>(def.u.fs_d.valid_min);
    const auto most = static_cast<double>(def.u.fs_d.valid_max);
    if (form == Form::kTooLarge || number < least || number > most) {
        failRange(def, text, rangeText(def, {}));
    }
    return number;
}

host::ParamValue parseCheckbox(const PF_ParamDef& def, std::string_view text) {
    constexpr std::array<std::string_view, 4> kOn = {"on", "true", "yes", "1"};
    constexpr std::array<std::string_view, 4> kOff = {"off", "false", "no", "0"};
    const auto is = [text](std::string_view word) { return text::equalWithoutCase(word, text); };
    if (std::any_of(kOn.begin(), kOn.end(), is)) {
        return A_long{1};
    }
    if (std::any_of(kOff.begin(), kOff.end(), is)) {
        return A_long{0};
    }
    failForm(def, "on or off", text);
}

std::optional<A_u_char> parseHexByte(std::string_view digits) {
    const auto isHex = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    };
    unsigned byte = 0;
    if (!std::all_of(digits.begin(), digits.end(), isHex)) {
        return std::nullopt;
    }
    std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    return static_cast<A_u_char>(byte);
}

std::optional<PF_Pixel> parseHexColor(std::string_view text) {
    if (text.size() != 7 || text.front() != '#') {
        return std::nullopt;
    }
    const auto red = parseHexByte(text.substr(1, 2));
    const auto green = parseHexByte(text.substr(3, 2));
    const auto blue = parseHexByte(text.substr(5, 2));
    if (!red || !green || !blue) {
        return std::nullopt;
    }
    return PF_Pixel{255, *red, *green, *blue};
}

constexpr char kColorForm[] = "a colour as #RRGGBB or red,green,blue";

host::ParamValue parseColor(const PF_ParamDef& def, std::string_view text) {
    if (const auto color = parseHexColor(text)) {
        return *color;
    }
    std::array<A_u_char, 3> channels{};
    std::string_view rest = text;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        const std::size_t comma = rest.find(',');
        if ((comma == std::string_view::npos) != (i == 2)) {
            failForm(def, kColorForm, text);
        }
        int channel = 0;
        const Form form = parseNumber(text::trimmed(rest.substr(0, comma)), channel);
        if (form == Form::kWrong) {
            failForm(def, kColorForm, text);
        }
        if (form == Form::kTooLarge || channel < 0 || channel > 255) {
            failRange(def, text, "0 to 255 for each channel");
        }
        channels[i] = static_cast<A_u_char>(channel);
        rest.remove_prefix(i == 2 ? rest.size() : comma + 1);
    }
    return PF_Pixel{255, channels[0], channels[1], channels[2]};
}

std::string colorText(const PF_Pixel& color) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text(1, '#');
    for (const A_u_char channel : {color.red, color.green, color.blue}) {
        text += kDigits[channel >> 4];
        text += kDigits[channel & 0xf];
    }
    return text;
}

/// Popups count from 1. The text may hold more or fewer entries than the definition says there are.
std::size_t choiceCount(const PF_ParamDef& def, const std::vector<std::string>& choices) {
    return std::min(static_cast<std::size_t>(std::max<A_short>(def.u.pd.num_choices, 0)), choices.size());
}

bool isSeparator(std::string_view choice) {
    return choice.starts_with(kSeparatorStart);
}

host::ParamValue choose(const PF_ParamDef& def, const std::vector<std::string>& choices, std::size_t place) {
    const auto value = static_cast<A_long>(place + 1);
    const std::string refusal = choiceRefusal(def, choices, value);
    if (!refusal.empty()) {
        throw text::Failure(text::FailureKind::kUsage, refusal);
    }
    return value;
}

host::ParamValue parsePopup(const PF_ParamDef& def, const std::vector<std::string>& choices,
                            std::string_view text) {
    const std::size_t count = choiceCount(def, choices);
    for (std::size_t place = 0; place < count; ++place) {
        if (text::equalWithoutCase(text::trimmed(choices[place]), text)) {
            return choose(def, choices, place);
        }
    }
    A_long number = 0;
    if (parseNumber(text, number) == Form::kGood && number >= 1 &&
        static_cast<std::size_t>(number) <= count) {
        return choose(def, choices, static_cast<std::size_t>(number - 1));
    }
    throw text::Failure(text::FailureKind::kUsage, text::inQuotes(def.name) + " has no choice " +
                                                       text::inQuotes(text) + "; it takes " +
                                                       rangeText(def, choices));
}

std::string choiceList(const PF_ParamDef& def, const std::vector<std::string>& choices) {
    std::string list;
    for (const A_long value : choosable(def, choices)) {
        list += (list.empty() ? "" : ", ") + valueText(def, choices, value);
    }
    return list;
}

} // namespace

host::ParamValue parseValue(const PF_ParamDef& def, const std::vector<std::string>& choices,
                            std::string_view text) {
    const std::string_view inner = text::trimmed(text);
    switch (def.param_type) {
    case PF_Param_SLIDER:
        return parseSlider(def, inner);
    case PF_Param_FLOAT_SLIDER:
        return parseFloatSlider(def, inner);
    case PF_Param_CHECKBOX:
        return parseCheckbox(def, inner);
    case PF_Param_COLOR:
        return parseColor(def, inner);
    case PF_Param_POPUP:
        return parsePopup(def, choices, inner);
    default:
        throw text::Failure(text::FailureKind::kUsage, text::inQuotes(def.name) + " has no value");
    }
}

std::vector<A_long> choosable(const PF_ParamDef& def, const std::vector<std::string>& choices) {
    std::vector<A_long> values;
    for (std::size_t place = 0; place < choiceCount(def, choices); ++place) {
        if (!isSeparator(choices[place])) {
            values.push_back(static_cast<A_long>(place + 1));
        }
    }
    return values;
}

std::string choiceRefusal(const PF_ParamDef& def, const std::vector<std::string>& choices,
                          const host::ParamValue& value) {
    if (def.param_type != PF_Param_POPUP) {
        return {};
    }
    const A_long number = std::get<A_long>(value);
    if (number < 1 || static_cast<std::size_t>(number) > choiceCount(def, choices)) {
        return {};
    }
    const std::string& choice = choices[static_cast<std::size_t>(number - 1)];
    if (!isSeparator(choice)) {
        return {};
    }
    return text::inQuotes(def.name) + " cannot be " + text::inQuotes(choice) +
           ": it only separates the choices; it takes " + rangeText(def, choices);
}

std::string valueText(const PF_ParamDef& def, const std::vector<std::string>& choices,
                      const host::ParamValue& value) {
    if (const auto* color = std::get_if<PF_Pixel>(&value)) {
        return colorText(*color);
    }
    if (const auto* number = std::get_if<double>(&value)) {
        return numberText(static_cast<float>(*number));
    }
    const A_long number = std::get<A_long>(value);
    if (def.param_type == PF_Param_CHECKBOX) {
        return number != 0 ? "on" : "off";
    }
    if (def.param_type == PF_Param_POPUP && number >= 1 &&
        static_cast<std::size_t>(number) <= choiceCount(def, choices)) {
        return choices[static_cast<std::size_t>(number - 1)];
    }
    return std::to_string(number);
}

std::string kindText(const PF_ParamDef& def) {
    switch (def.param_type) {
    case PF_Param_SLIDER:
        return "whole number";
    case PF_Param_FLOAT_SLIDER:
        return "number";
    case PF_Param_CHECKBOX:
        return "check box";
    case PF_Param_COLOR:
        return "colour";
    case PF_Param_POPUP:
        return "popup";
    default:
        return {};
    }
}

std::string rangeText(const PF_ParamDef& def, const std::vector<std::string>& choices) {
    switch (def.param_type) {
    case PF_Param_SLIDER:
        return std::to_string(def.u.sd.valid_min) + " to " + std::to_string(def.u.sd.valid_max);
    case PF_Param_FLOAT_SLIDER:
        return numberText(def.u.fs_d.valid_min) + " to " + numberText(def.u.fs_d.valid_max);
    case PF_Param_CHECKBOX:
        return "on, off";
    case PF_Param_COLOR:
        return "#RRGGBB, or red,green,blue of 0 to 255 each";
    case PF_Param_POPUP:
        return choiceList(def, choices);
    default:
        return {};
    }
}

} // namespace kovalune::render
