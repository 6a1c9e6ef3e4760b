#include "adapters/openfx/Describe.h"

#include "adapters/openfx/ActionFailure.h"
#include "adapters/openfx/PropertySet.h"

#include <array>
#include <cmath>

namespace kovalune::openfx {

namespace {

void require(Status status, const std::string& what) {
    if (status != kOk) {
        throw ActionFailure(status == kMemory ? kMemory : kFailed, "the host does not define " + what);
    }
}

void setLabels(const PropertySet& properties, const std::string& label) {
    properties.set(name::kLabel, label.c_str());
    properties.offer(name::kShortLabel, label.c_str());
    properties.offer(name::kLongLabel, label.c_str());
}

bool hostHas(const PropertySet& host, const char* property, const char* value) {
    for (int i = 0;; ++i) {
        const std::optional<std::string> each = host.text(property, i);
        if (!each) {
            return false;
        }
        if (*each == value) {
            return true;
        }
    }
}

/// The whole frame counts: no tiles.
PropertySet defineClip(const Suites& suites, Effect effect, const char* clip) {
    Properties handle = nullptr;
    require(suites.effects->clipDefine(effect, clip, &handle), std::string("the clip ") + clip);
    const PropertySet properties(*suites.properties, handle);
    properties.offer(name::kSupportsTiles, 0);
    properties.offer(name::kTemporalClipAccess, 0);
    return properties;
}

void definePictureClip(const Suites& suites, Effect effect, const char* clip) {
    const PropertySet properties = defineClip(suites, effect, clip);
    properties.set(name::kSupportedComponents, name::kRgba);
    if (hostHas(PropertySet(*suites.properties, suites.host), name::kSupportedComponents, name::kRgb)) {
        properties.set(name::kSupportedComponents, name::kRgb, 1);
    }
}

void defineMaskClip(const Suites& suites, Effect effect) {
    const PropertySet properties = defineClip(suites, effect, name::kMask);
    properties.set(name::kSupportedComponents, name::kAlpha);
    properties.set(name::kOptional, 1);
    properties.offer(name::kIsMask, 1);
}

const char* typeOf(Control::Kind kind) {
    switch (kind) {
    case Control::Kind::kGroup:
        return name::kTypeGroup;
    case Control::Kind::kWhole:
        return name::kTypeInteger;
    case Control::Kind::kNumber:
        return name::kTypeDouble;
    case Control::Kind::kCheckBox:
        return name::kTypeBoolean;
    case Control::Kind::kColor:
        return name::kTypeRgb;
    default:
        return name::kTypeChoice;
    }
}

/// Hosts take their own limits for any of the four that is not set. Setting a limit may reset the one that is shown.
void setWholeRange(const PropertySet& properties, const Control& control) {
    properties.set(name::kMin, static_cast<int>(control.lowest));
    properties.set(name::kMax, static_cast<int>(control.highest));
    properties.set(name::kDisplayMin, static_cast<int>(control.shownLowest));
    properties.set(name::kDisplayMax, static_cast<int>(control.shownHighest));
    properties.set(name::kDefault, static_cast<int>(std::get<A_long>(control.initial)));
}

void setNumberRange(const PropertySet& properties, const Control& control) {
    properties.set(name::kMin, control.lowest);
    properties.set(name::kMax, control.highest);
    properties.set(name::kDisplayMin, control.shownLowest);
    properties.set(name::kDisplayMax, control.shownHighest);
    properties.offer(name::kDigits, control.digits);
    properties.offer(name::kIncrement, std::pow(10.0, -control.digits));
    properties.set(name::kDefault, std::get<double>(control.initial));
}

/// Not all hosts have limits of colours.
void setColor(const PropertySet& properties, const Control& control) {
    constexpr double kWhite = 255.0;
    const auto initial = std::get<PF_Pixel>(control.initial);
    const std::array<A_u_char, 3> channels = {initial.red, initial.green, initial.blue};
    for (int i = 0; i < 3; ++i) {
        properties.offer(name::kMin, control.lowest, i);
        properties.offer(name::kMax, control.highest, i);
        properties.offer(name::kDisplayMin, control.shownLowest, i);
        properties.offer(name::kDisplayMax, control.shownHighest, i);
        properties.set(name::kDefault, channels[static_cast<std::size_t>(i)] / kWhite, i);
    }
    properties.offer(name::kDigits, control.digits);
}

void setChoices(const PropertySet& properties, const Control& control) {
    int initial = 0;
    for (std::size_t i = 0; i < control.choices.size(); ++i) {
        properties.set(name::kChoiceOption, control.choices[i].c_str(), static_cast<int>(i));
        if (control.choiceValues[i] == std::get<A_long>(control.initial)) {
            initial = static_cast<int>(i);
        }
    }
    properties.set(name::kDefault, initial);
    // Clips, and what a frame is made of, are not to change within a shot.
    properties.offer(name::kAnimates, 0);
}

void define(const Suites& suites, ParamSet params, const Control& control, bool boolsAnimate) {
    Properties handle = nullptr;
    require(suites.params->define(params, typeOf(control.kind), control.name.c_str(), &handle),
            "the parameter " + control.name);
    const PropertySet properties(*suites.properties, handle);
    setLabels(properties, control.label);
    properties.offer(name::kHint, control.hint.c_str());
    if (!control.parent.empty()) {
        properties.offer(name::kParent, control.parent.c_str());
    }
    switch (control.kind) {
    case Control::Kind::kGroup:
        // Process 2 to 4 are off at first.
        properties.offer(name::kGroupOpen, control.name == "base" || control.name == "process1" ? 1 : 0);
        break;
    case Control::Kind::kWhole:
        setWholeRange(properties, control);
        properties.offer(name::kAnimates, 1);
        break;
    case Control::Kind::kNumber:
        setNumberRange(properties, control);
        properties.offer(name::kAnimates, 1);
        break;
    case Control::Kind::kCheckBox:
        properties.set(name::kDefault, static_cast<int>(std::get<A_long>(control.initial)));
        properties.offer(name::kAnimates, boolsAnimate ? 1 : 0);
        break;
    case Control::Kind::kColor:
        setColor(properties, control);
        properties.offer(name::kAnimates, 1);
        break;
    default:
        setChoices(properties, control);
        break;
    }
}

PropertySet propertiesOf(const Suites& suites, Effect effect) {
    Properties handle = nullptr;
    if (suites.effects->getPropertySet(effect, &handle) != kOk || handle == nullptr) {
        throw ActionFailure(kBadHandle, "the host gives no properties of the effect");
    }
    return {*suites.properties, handle};
}

} // namespace

void describe(const Suites& suites, Effect effect, const std::string& version) {
    const PropertySet properties = propertiesOf(suites, effect);
    setLabels(properties, kPluginLabel);
    properties.offer(name::kGrouping, kPluginGroup);
    properties.offer(name::kVersionLabel, version.c_str());
    properties.offer(
        name::kDescription,
        "Softens animation that is drawn in flat colours, region by region. Pick colours; every other "
        "pixel stays as it is, lines too.");
    properties.set(name::kSupportedContexts, name::kContextFilter, 0);
    properties.set(name::kSupportedContexts, name::kContextGeneral, 1);
    properties.set(name::kSupportedPixelDepths, name::kDepthByte, 0);
    properties.set(name::kSupportedPixelDepths, name::kDepthShort, 1);
    properties.set(name::kSupportedPixelDepths, name::kDepthFloat, 2);
    properties.offer(name::kThreadSafety, name::kFullySafe);
    properties.offer(name::kSingleInstance, 0);
    properties.offer(name::kHostFrameThreading, 0);
    properties.offer(name::kSupportsMultiResolution, 1);
    properties.offer(name::kSupportsTiles, 0);
    properties.offer(name::kTemporalClipAccess, 0);
    properties.offer(name::kFieldRenderTwiceAlways, 0);
    properties.offer(name::kMultipleClipDepths, 0);
    properties.offer(name::kMultipleClipPars, 0);
    properties.offer(name::kSlaveParam, kViewName);
}

void describeInContext(const Suites& suites, Effect effect, const std::string& context,
                       const std::vector<Control>& controls) {
    definePictureClip(suites, effect, name::kSource);
    if (context == name::kContextGeneral) {
        defineMaskClip(suites, effect);
    }
    definePictureClip(suites, effect, name::kOutput);
    ParamSet params = nullptr;
    require(suites.effects->getParamSet(effect, &params), "parameters");
    const PropertySet host(*suites.properties, suites.host);
    const bool boolsAnimate = host.integer(name::kHostBooleanAnimation).value_or(0) != 0;
    for (const Control& control : controls) {
        define(suites, params, control, boolsAnimate);
    }
}

} // namespace kovalune::openfx
