#include "render/Stages.h"

#include "render/ParamText.h"

#include <variant>

namespace kovalune::render {

namespace {

template <class Value>
std::optional<Value> valueOf(const host::Session& session, const std::string& label) {
    const std::optional<int> index = session.findParam(label);
    if (!index) {
        return std::nullopt;
    }
    const PF_ParamType type = session.params()[static_cast<std::size_t>(*index)].param_type;
    if (type == PF_Param_GROUP_START || type == PF_Param_GROUP_END) {
        return std::nullopt;
    }
    const host::ParamValue value = session.value(*index);
    const Value* const known = std::get_if<Value>(&value);
    return known == nullptr ? std::nullopt : std::optional(*known);
}

/// "Blur Repeat Num", "1 : Blur Repeat Num"
std::string labelIn(std::size_t stage, const std::string& label) {
    return stage == 0 ? label : std::to_string(stage) + " : " + label;
}

} // namespace

PF_RationalScale scaleOf(const Fraction& fraction) {
    return {fraction.numerator, static_cast<A_u_long>(fraction.denominator)};
}

std::string stageName(std::size_t stage) {
    return stage == 0 ? "Base" : "Process " + std::to_string(stage);
}

std::string stageSwitch(std::size_t stage) {
    return labelIn(stage, "Enable Process");
}

std::string colorLabel(std::size_t stage, std::size_t color) {
    return stage == 0 ? "Color " + std::to_string(color + 1) : labelIn(stage, "Color");
}

std::string colorSwitch(std::size_t stage, std::size_t color) {
    return stage == 0 ? "Enable " + std::to_string(color + 1) : stageSwitch(stage);
}

std::size_t colorsOf(std::size_t stage) {
    return stage == 0 ? kStageColors : 1;
}

std::string colorText(const host::Session& session, const std::string& label) {
    const std::optional<int> index = session.findParam(label);
    return index ? valueText(session.params()[static_cast<std::size_t>(*index)], {}, session.value(*index))
                 : std::string();
}

std::optional<bool> isOn(const host::Session& session, const std::string& checkBox) {
    const std::optional<A_long> value = valueOf<A_long>(session, checkBox);
    return value ? std::optional(*value != 0) : std::nullopt;
}

std::optional<std::size_t> offStageOf(const host::Session& session, const std::string& view) {
    for (std::size_t stage = 1; stage < kStageCount; ++stage) {
        if (view == stageName(stage) && isOn(session, stageSwitch(stage)) == false) {
            return stage;
        }
    }
    return std::nullopt;
}

std::optional<ProgressSettings> progressSettings(const host::Session& session, const Downsample& downsample) {
    ProgressSettings settings;
    const std::optional<A_long> view = valueOf<A_long>(session, std::string(kViewLabel));
    if (!view) {
        return std::nullopt;
    }
    settings.view = *view;
    settings.downsampleX = scaleOf(downsample[0]);
    settings.downsampleY = scaleOf(downsample[1]);
    for (std::size_t stage = 0; stage < kStageCount; ++stage) {
        const auto on = stage == 0 ? std::optional(true) : isOn(session, stageSwitch(stage));
        const auto amount =
            valueOf<double>(session, labelIn(stage, stage == 0 ? "Blur Amount" : "Boundary Blur"));
        const auto repeat = valueOf<A_long>(session, labelIn(stage, "Blur Repeat Num"));
        if (!on || !amount || !repeat) {
            return std::nullopt;
        }
        settings.stages[stage] = {*on, *amount, *repeat};
    }
    return settings;
}

} // namespace kovalune::render
