#include "adapters/openfx/Controls.h"

#include "hostapi/Constants.h"
#include "render/Hints.h"
#include "render/ParamLabel.h"
#include "render/ParamText.h"

#include <cctype>

namespace kovalune::openfx {

namespace {

bool isWordLetter(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) != 0;
}

char withCase(char letter, bool upper) {
    const auto code = static_cast<unsigned char>(letter);
    return static_cast<char>(upper ? std::toupper(code) : std::tolower(code));
}

/// "Color" of "1 : Color": the group has the number.
std::string_view withoutStage(std::string_view label) {
    const std::size_t colon = label.find(':');
    return colon == std::string_view::npos ? label : label.substr(colon + 1);
}

void addWhole(Control& control, const PF_SliderDef& slider) {
    control.kind = Control::Kind::kWhole;
    control.lowest = slider.valid_min;
    control.highest = slider.valid_max;
    control.shownLowest = slider.slider_min;
    control.shownHighest = slider.slider_max;
}

void addNumber(Control& control, const PF_FloatSliderDef& slider) {
    control.kind = Control::Kind::kNumber;
    control.lowest = static_cast<double>(slider.valid_min);
    control.highest = static_cast<double>(slider.valid_max);
    control.shownLowest = static_cast<double>(slider.slider_min);
    control.shownHighest = static_cast<double>(slider.slider_max);
    control.digits = slider.precision;
}

void addChoices(Control& control, const PF_ParamDef& def, const std::vector<std::string>& choices) {
    control.kind = Control::Kind::kChoice;
    control.choiceValues = render::choosable(def, choices);
    for (const A_long value : control.choiceValues) {
        control.choices.push_back(choices[static_cast<std::size_t>(value - 1)]);
    }
}

Control controlOf(const host::Session& session, int index, const std::string& group) {
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    Control control;
    control.index = index;
    control.label = def.name;
    control.name = nameOf(control.label, group);
    control.parent = group;
    control.hint = render::hintOf(control.label).english;
    if (def.param_type == PF_Param_GROUP_START) {
        control.index = 0;
        return control;
    }
    control.initial = session.defaultValue(index);
    switch (def.param_type) {
    case PF_Param_SLIDER:
        addWhole(control, def.u.sd);
        break;
    case PF_Param_FLOAT_SLIDER:
        addNumber(control, def.u.fs_d);
        break;
    case PF_Param_CHECKBOX:
        control.kind = Control::Kind::kCheckBox;
        break;
    case PF_Param_COLOR:
        control.kind = Control::Kind::kColor;
        control.highest = control.shownHighest = 1.0;
        control.digits = 3;
        break;
    default:
        addChoices(control, def, session.choices(index));
        break;
    }
    return control;
}

Control pixelValues() {
    Control control;
    control.kind = Control::Kind::kChoice;
    control.name = kPixelValues;
    control.label = "Pixel Values";
    control.hint = "What the host's values are. Linear light goes through the sRGB curve before the effect, "
                   "colours too, and "
                   "back after it.";
    control.choices = {"As they are", "Linear light"};
    control.choiceValues = {0, kLinearLight};
    control.initial = A_long{0};
    return control;
}

} // namespace

std::string nameOf(std::string_view label, std::string_view group) {
    std::string name(group);
    bool begins = true;
    for (const char letter : withoutStage(label)) {
        if (isWordLetter(letter)) {
            name += begins ? withCase(letter, !name.empty()) : letter;
        }
        begins = !isWordLetter(letter);
    }
    return name;
}

std::vector<Control> controlsOf(const host::Session& session) {
    std::vector<Control> controls;
    std::string group;
    const int count = static_cast<int>(session.params().size());
    for (int index = 1; index < count; ++index) {
        const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
        if (def.param_type == PF_Param_GROUP_END) {
            group.clear();
        } else if (def.param_type == PF_Param_GROUP_START || render::isSettable(def)) {
            controls.push_back(controlOf(session, index, group));
            group = def.param_type == PF_Param_GROUP_START ? controls.back().name : group;
        }
    }
    controls.push_back(pixelValues());
    return controls;
}

} // namespace kovalune::openfx
