#include "render/AreaSettings.h"

#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <array>
#include <charconv>
#include <filesystem>
#include <system_error>

namespace kovalune::render {

namespace {

[[noreturn]] void refuse(const std::string& name, const std::string& takes, std::string_view text) {
    throw text::Failure(text::FailureKind::kUsage,
                        name + " takes " + takes + ", not " + text::inQuotes(text));
}

template <class Value>
void takeOver(std::optional<Value>& below, const std::optional<Value>& above) {
    if (above) {
        below = above;
    }
}

bool isOn(std::string_view text) {
    for (const char* const on : {"on", "yes", "true", "1"}) {
        if (text::equalWithoutCase(text, on)) {
            return true;
        }
    }
    for (const char* const off : {"off", "no", "false", "0"}) {
        if (text::equalWithoutCase(text, off)) {
            return false;
        }
    }
    refuse("'Invert Mask'", "on or off", text);
}

MaskBy maskByOf(std::string_view text) {
    if (text::equalWithoutCase(text, "alpha")) {
        return MaskBy::kAlpha;
    }
    if (text::equalWithoutCase(text, "grey")) {
        return MaskBy::kGrey;
    }
    refuse("'Mask By'", "alpha or grey", text);
}

} // namespace

void layOver(AreaSettings& below, const AreaSettings& above) {
    takeOver(below.mask, above.mask);
    takeOver(below.maskBy, above.maskBy);
    takeOver(below.invert, above.invert);
    takeOver(below.region, above.region);
}

Region parseRegion(std::string_view text, const std::string& name) {
    constexpr int64_t kFurthest = 1000000000;
    std::array<int64_t, 4> numbers{};
    std::string_view rest = text;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        rest = text::trimmed(rest);
        const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), numbers[i]);
        const bool right = error == std::errc() && numbers[i] >= -kFurthest && numbers[i] <= kFurthest;
        if (!right) {
            refuse(name, "X,Y,W,H, whole pixels from the top left", text);
        }
        rest = text::trimmed(rest.substr(static_cast<std::size_t>(end - rest.data())));
        if (i + 1 < numbers.size() ? !rest.starts_with(',') : !rest.empty()) {
            refuse(name, "X,Y,W,H, whole pixels from the top left", text);
        }
        rest.remove_prefix(rest.empty() ? 0 : 1);
    }
    if (numbers[2] < 1 || numbers[3] < 1) {
        refuse(name, "X,Y,W,H with a width and a height of 1 or more", text);
    }
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

bool takeAreaLine(AreaSettings& area, std::string_view label, std::string_view value,
                  const std::string& folder) {
    const std::string_view text = text::trimmed(value);
    if (text::equalWithoutCase(label, "Mask")) {
        if (text.empty()) {
            refuse("'Mask'", "a picture's name", text);
        }
        area.mask = (std::filesystem::path(folder) / text).string();
    } else if (text::equalWithoutCase(label, "Mask By")) {
        area.maskBy = maskByOf(text);
    } else if (text::equalWithoutCase(label, "Invert Mask")) {
        area.invert = isOn(text);
    } else if (text::equalWithoutCase(label, "Region")) {
        area.region = parseRegion(text, "'Region'");
    } else {
        return false;
    }
    return true;
}

std::string areaText(const AreaSettings& area) {
    std::string text;
    if (area.mask) {
        std::error_code error;
        const std::filesystem::path whole = std::filesystem::absolute(*area.mask, error);
        text += "Mask=" + (error ? *area.mask : whole.lexically_normal().string()) + '\n';
    }
    if (area.maskBy) {
        text += *area.maskBy == MaskBy::kAlpha ? "Mask By=alpha\n" : "Mask By=grey\n";
    }
    if (area.invert) {
        text += *area.invert ? "Invert Mask=on\n" : "Invert Mask=off\n";
    }
    if (area.region) {
        const Region& region = *area.region;
        text += "Region=" + std::to_string(region.x) + ',' + std::to_string(region.y) + ',' +
                std::to_string(region.width) + ',' + std::to_string(region.height) + '\n';
    }
    return text;
}

} // namespace kovalune::render
