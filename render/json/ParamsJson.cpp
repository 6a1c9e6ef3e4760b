#include "render/json/ParamsJson.h"

#include "effect/share/StandardParts.h"
#include "hostapi/Constants.h"
#include "render/Hints.h"
#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "text/NumberText.h"

#include <nlohmann/json.hpp>

#include <vector>

namespace kovalune::render {

namespace {

using Json = nlohmann::ordered_json;

const char* kindOf(const PF_ParamDef& def) {
    switch (def.param_type) {
    case PF_Param_SLIDER:
        return "integer";
    case PF_Param_FLOAT_SLIDER:
        return "number";
    case PF_Param_CHECKBOX:
        return "checkbox";
    case PF_Param_COLOR:
        return "color";
    case PF_Param_POPUP:
        return "popup";
    case PF_Param_GROUP_START:
        return "group";
    case PF_Param_GROUP_END:
        return "group end";
    default:
        return "other";
    }
}

/// The double of the same decimal digits: 0.1F is 0.1 and not 0.10000000149011612.
double sameDigits(float number) {
    const std::string text = text::shortestText(number);
    double result = static_cast<double>(number);
    fromChars(text.data(), text.data() + text.size(), result);
    return result;
}

void addIntegerRange(Json& json, const PF_SliderDef& slider) {
    json["min"] = slider.valid_min;
    json["max"] = slider.valid_max;
    json["sliderMin"] = slider.slider_min;
    json["sliderMax"] = slider.slider_max;
}

void addNumberRange(Json& json, const PF_FloatSliderDef& slider) {
    json["min"] = sameDigits(slider.valid_min);
    json["max"] = sameDigits(slider.valid_max);
    json["sliderMin"] = sameDigits(slider.slider_min);
    json["sliderMax"] = sameDigits(slider.slider_max);
    json["precision"] = slider.precision;
}

void addChoices(Json& json, const PF_ParamDef& def, const std::vector<std::string>& choices) {
    json["choices"] = Json::array();
    for (A_long value = 1; value <= def.u.pd.num_choices; ++value) {
        const auto place = static_cast<std::size_t>(value - 1);
        if (place >= choices.size()) {
            break;
        }
        json["choices"].push_back({{"value", value},
                                   {"label", choices[place]},
                                   {"selectable", choiceRefusal(def, choices, value).empty()}});
    }
}

void addValue(Json& json, const host::Session& session, int index, const PF_ParamDef& def) {
    const host::ParamValue value = session.defaultValue(index);
    switch (def.param_type) {
    case PF_Param_SLIDER:
        json["default"] = std::get<A_long>(value);
        addIntegerRange(json, def.u.sd);
        break;
    case PF_Param_FLOAT_SLIDER:
        json["default"] = std::get<double>(value);
        addNumberRange(json, def.u.fs_d);
        break;
    case PF_Param_CHECKBOX:
        json["default"] = std::get<A_long>(value) != 0;
        break;
    case PF_Param_COLOR:
        json["default"] = valueText(def, {}, value);
        json["defaultAlpha"] = std::get<PF_Pixel>(value).alpha;
        break;
    default:
        json["default"] = std::get<A_long>(value);
        addChoices(json, def, session.choices(index));
        break;
    }
}

Json parameterJson(const host::Session& session, int index, const std::vector<int>& groups) {
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    Json json = {{"index", index},      {"id", def.uu.id},        {"label", def.name},
                 {"kind", kindOf(def)}, {"type", def.param_type}, {"groups", groups}};
    if (isSettable(def)) {
        addValue(json, session, index, def);
    }
    if (const Hint hint = hintOf(def.name); !hint.english.empty()) {
        json["hint"] = {{"en", hint.english}, {"ja", hint.japanese}};
    }
    return json;
}

} // namespace

std::string paramsJson(const host::Session& session) {
    Json parameters = Json::array();
    std::vector<int> groups; // those that are open, by their index, the outermost first
    const int count = static_cast<int>(session.params().size());
    for (int index = 1; index < count; ++index) {
        const PF_ParamType type = session.params()[static_cast<std::size_t>(index)].param_type;
        if (type == PF_Param_GROUP_END && !groups.empty()) {
            groups.pop_back();
        }
        parameters.push_back(parameterJson(session, index, groups));
        if (type == PF_Param_GROUP_START) {
            groups.push_back(index);
        }
    }
    const Json all = {{"parameters", std::move(parameters)}};
    return all.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace kovalune::render
