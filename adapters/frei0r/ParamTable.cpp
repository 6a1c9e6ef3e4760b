#include "adapters/frei0r/ParamTable.h"

#include "render/Hints.h"
#include "render/OpenEffect.h"
#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "text/Failure.h"

#include <algorithm>
#include <cmath>

namespace kovalune::frei0r {

namespace {

constexpr double kStepsAUnit = 1000.0;

struct Range {
    double lowest;
    double highest;
};

Range rangeOf(const PF_ParamDef& def) {
    if (def.param_type == PF_Param_FLOAT_SLIDER) {
        return {static_cast<double>(def.u.fs_d.valid_min), static_cast<double>(def.u.fs_d.valid_max)};
    }
    return {static_cast<double>(def.u.sd.valid_min), static_cast<double>(def.u.sd.valid_max)};
}

ParamType typeOf(const PF_ParamDef& def) {
    switch (def.param_type) {
    case PF_Param_CHECKBOX:
        return kBool;
    case PF_Param_COLOR:
        return kColor;
    case PF_Param_POPUP:
        return kString;
    default:
        return kDouble;
    }
}

/// The real range and its form here, empty where that goes without saying.
std::string rangeOfParam(const Param& param) {
    const std::string range = render::rangeText(param.def, param.choices);
    switch (param.type) {
    case kDouble:
        return range + ", given as 0 to 1. ";
    case kString: {
        std::string numbers;
        for (const A_long value : render::choosable(param.def, param.choices)) {
            numbers += (numbers.empty() ? "" : ", ") + std::to_string(value);
        }
        return range + "; or " + numbers + ". ";
    }
    default:
        return {};
    }
}

Param settingsFile() {
    Param param;
    param.name = "Settings File";
    param.explanation =
        "Path of a settings file of the command kovalune, without keys, passes and areas. What it names "
        "wins over the parameters below; it is read whenever this is set.";
    return param;
}

Param paramOf(const host::Session& session, int index) {
    Param param;
    param.def = session.params()[static_cast<std::size_t>(index)];
    param.name = param.def.name;
    param.type = typeOf(param.def);
    param.index = index;
    param.choices = session.choices(index);
    param.initial = session.defaultValue(index);
    param.explanation = rangeOfParam(param) + std::string(render::hintOf(param.name).english);
    return param;
}

std::vector<Param> makeTable() {
    render::OpenEffect effect(1, render::Defaults::kFactory);
    const host::Session& session = effect.session();
    std::vector<Param> table = {settingsFile()};
    for (int index = 1; index < static_cast<int>(session.params().size()); ++index) {
        if (render::isSettable(session.params()[static_cast<std::size_t>(index)])) {
            table.push_back(paramOf(session, index));
        }
    }
    if (table.size() != kParamCount) {
        throw text::Failure(text::FailureKind::kEffect, "the effect has " + std::to_string(table.size() - 1) +
                                                            " controls, not " +
                                                            std::to_string(kParamCount - 1));
    }
    return table;
}

uint8_t levelOf(float channel) {
    // A NaN is 0.
    return channel > 0.0F ? static_cast<uint8_t>(std::lround(std::min(channel, 1.0F) * 255.0F)) : uint8_t{0};
}

} // namespace

const std::vector<Param>& paramTable() {
    static const std::vector<Param> table = makeTable();
    return table;
}

std::optional<host::ParamValue> valueOfNumber(const Param& param, double number) {
    if (std::isnan(number)) {
        return std::nullopt;
    }
    if (param.type == kBool) {
        return A_long{number < 0.5 ? 0 : 1};
    }
    const Range range = rangeOf(param.def);
    const double value = range.lowest + std::clamp(number, 0.0, 1.0) * (range.highest - range.lowest);
    if (param.def.param_type == PF_Param_FLOAT_SLIDER) {
        return std::round(value * kStepsAUnit) / kStepsAUnit;
    }
    return static_cast<A_long>(std::lround(value));
}

double numberOfValue(const Param& param, const host::ParamValue& value) {
    if (param.type == kBool) {
        return std::get<A_long>(value) != 0 ? 1.0 : 0.0;
    }
    const auto* const amount = std::get_if<double>(&value);
    const double real = amount != nullptr ? *amount : static_cast<double>(std::get<A_long>(value));
    const Range range = rangeOf(param.def);
    return (real - range.lowest) / (range.highest - range.lowest);
}

PF_Pixel valueOfColor(const Color& color) {
    return {255, levelOf(color.red), levelOf(color.green), levelOf(color.blue)};
}

Color colorOfValue(const PF_Pixel& value) {
    const auto channel = [](uint8_t level) { return static_cast<float>(level) / 255.0F; };
    return {channel(value.red), channel(value.green), channel(value.blue)};
}

} // namespace kovalune::frei0r
