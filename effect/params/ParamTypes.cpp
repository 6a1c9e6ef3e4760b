#include "effect/params/ParamTypes.h"

#include "effect/params/DefaultsFile.h"

#include <utility>

namespace kovalune {
namespace {

constexpr float kCurveTolerance = 0.05F;

} // namespace

PF_Err ParamAddSlider::addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) {
    const RememberedDefaults defaults(inData, defaultsPath);
    const int32_t value = defaults.integer(label, limits_.initial);
    beginDefinition(inData, PF_Param_SLIDER);
    PF_SliderDef& slider = def.u.sd;
    slider.valid_min = limits_.validMin;
    slider.valid_max = limits_.validMax;
    slider.slider_min = limits_.sliderMin;
    slider.slider_max = limits_.sliderMax;
    slider.value = value;
    slider.dephault = value;
    slider.value_str[0] = '\0';
    slider.value_desc[0] = '\0';
    return addDefinition(inData, id);
}

bool ParamAddSlider::saveDefault(const char* defaultsPath) const {
    return rememberInteger(label, def.u.sd.value, defaultsPath);
}

PF_Err ParamAddFloatSlider::addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) {
    const RememberedDefaults defaults(inData, defaultsPath);
    const double value = defaults.number(label, static_cast<double>(limits_.initial));
    beginDefinition(inData, PF_Param_FLOAT_SLIDER);
    PF_FloatSliderDef& slider = def.u.fs_d;
    slider.valid_min = limits_.validMin;
    slider.valid_max = limits_.validMax;
    slider.slider_min = limits_.sliderMin;
    slider.slider_max = limits_.sliderMax;
    slider.value = value;
    slider.dephault = static_cast<float>(value);
    slider.precision = limits_.precision;
    slider.display_flags = limits_.displayFlags;
    if (limits_.wantPhase) {
        slider.fs_flags |= PF_FSliderFlag_WANT_PHASE;
    }
    slider.curve_tolerance = kCurveTolerance;
    return addDefinition(inData, id);
}

bool ParamAddFloatSlider::saveDefault(const char* defaultsPath) const {
    return rememberNumber(label, def.u.fs_d.value, defaultsPath);
}

PF_Err ParamAddCheckbox::addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) {
    const RememberedDefaults defaults(inData, defaultsPath);
    const int32_t value = defaults.integer(label, initial_);
    beginDefinition(inData, PF_Param_CHECKBOX);
    def.u.bd.value = value;
    def.u.bd.dephault = static_cast<PF_Boolean>(value);
    def.u.bd.u.nameptr = text_;
    def.flags |= flags_;
    return addDefinition(inData, id);
}

bool ParamAddCheckbox::saveDefault(const char* defaultsPath) const {
    return rememberInteger(label, def.u.bd.value, defaultsPath);
}

PF_Err ParamAddColor::addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) {
    const RememberedDefaults defaults(inData, defaultsPath);
    const auto channel = [&](char name, A_u_char initial) {
        return static_cast<A_u_char>(
            static_cast<uint32_t>(defaults.integer(colorKey(label, name).c_str(), initial)));
    };
    const PF_Pixel value = {255, channel('r', initial_.red), channel('g', initial_.green),
                            channel('b', initial_.blue)};
    beginDefinition(inData, PF_Param_COLOR);
    def.u.cd.value = value;
    def.u.cd.dephault = value;
    return addDefinition(inData, id);
}

bool ParamAddColor::saveDefault(const char* defaultsPath) const {
    const PF_Pixel& value = def.u.cd.value;
    bool saved = true;
    for (const auto& [channel, level] :
         {std::pair('r', value.red), {'g', value.green}, {'b', value.blue}, {'a', value.alpha}}) {
        saved = rememberInteger(colorKey(label, channel).c_str(), level, defaultsPath) && saved;
    }
    return saved;
}

PF_Err ParamAddPopup::addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) {
    const RememberedDefaults defaults(inData, defaultsPath);
    const int32_t value = defaults.integer(label, initial_);
    beginDefinition(inData, PF_Param_POPUP);
    def.u.pd.num_choices = choiceCount_;
    def.u.pd.u.namesptr = choices_;
    def.u.pd.value = value;
    def.u.pd.dephault = static_cast<A_short>(value);
    return addDefinition(inData, id);
}

bool ParamAddPopup::saveDefault(const char* defaultsPath) const {
    return rememberInteger(label, def.u.pd.value, defaultsPath);
}

PF_Err ParamAddTopic::addToHost(PF_InData* inData, int32_t id, const char* /*defaultsPath*/) {
    beginDefinition(inData, PF_Param_GROUP_START);
    return addDefinition(inData, id);
}

PF_Err ParamEndTopic::addToHost(PF_InData* inData, int32_t id, const char* /*defaultsPath*/) {
    def.param_type = PF_Param_GROUP_END;
    return addDefinition(inData, id);
}

} // namespace kovalune
