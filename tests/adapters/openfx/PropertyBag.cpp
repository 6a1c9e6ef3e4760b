#include "tests/adapters/openfx/PropertyBag.h"

#include <algorithm>

namespace kovalune::test {

namespace {

constexpr auto kI = PropertyType::kInt;
constexpr auto kD = PropertyType::kDouble;
constexpr auto kS = PropertyType::kString;
constexpr auto kP = PropertyType::kPointer;

constexpr PropertySpec kHost[] = {
    {"OfxPropAPIVersion", kI, 0},
    {"OfxPropType", kS},
    {"OfxPropName", kS},
    {"OfxPropLabel", kS},
    {"OfxPropVersion", kI, 0},
    {"OfxPropVersionLabel", kS},
    {"OfxImageEffectHostPropIsBackground", kI},
    {"OfxImageEffectPropSupportsOverlays", kI},
    {"OfxImageEffectPropSupportsMultiResolution", kI},
    {"OfxImageEffectPropSupportsTiles", kI},
    {"OfxImageEffectPropTemporalClipAccess", kI},
    {"OfxImageEffectPropSupportedComponents", kS, 0},
    {"OfxImageEffectPropSupportedContexts", kS, 0},
    {"OfxImageEffectPropSupportedPixelDepths", kS, 0},
    {"OfxImageEffectPropMultipleClipDepths", kI},
    {"OfxImageEffectPropSupportsMultipleClipPARs", kI},
    {"OfxParamHostPropSupportsBooleanAnimation", kI},
    {"OfxParamHostPropSupportsChoiceAnimation", kI},
    {"OfxParamHostPropMaxParameters", kI},
};

constexpr PropertySpec kEffect[] = {
    {"OfxPropType", kS},
    {"OfxPropLabel", kS, 1, true},
    {"OfxPropShortLabel", kS, 1, true},
    {"OfxPropLongLabel", kS, 1, true},
    {"OfxPropVersion", kI, 0, true},
    {"OfxPropVersionLabel", kS, 1, true},
    {"OfxPropPluginDescription", kS, 1, true},
    {"OfxImageEffectPropSupportedContexts", kS, 0, true},
    {"OfxImageEffectPropSupportedPixelDepths", kS, 0, true},
    {"OfxImageEffectPluginPropGrouping", kS, 1, true},
    {"OfxImageEffectPluginPropSingleInstance", kI, 1, true},
    {"OfxImageEffectPluginRenderThreadSafety", kS, 1, true},
    {"OfxImageEffectPluginPropHostFrameThreading", kI, 1, true},
    {"OfxImageEffectPropSupportsMultiResolution", kI, 1, true},
    {"OfxImageEffectPropSupportsTiles", kI, 1, true},
    {"OfxImageEffectPropTemporalClipAccess", kI, 1, true},
    {"OfxImageEffectPluginPropFieldRenderTwiceAlways", kI, 1, true},
    {"OfxImageEffectPropMultipleClipDepths", kI, 1, true},
    {"OfxImageEffectPropSupportsMultipleClipPARs", kI, 1, true},
    {"OfxImageEffectPropClipPreferencesSlaveParam", kS, 0, true},
    {"OfxPluginPropFilePath", kS},
};

constexpr PropertySpec kInstance[] = {
    {"OfxPropType", kS},
    {"OfxImageEffectPropContext", kS},
    {"OfxPropInstanceData", kP, 1, true},
    {"OfxImageEffectPropPluginHandle", kP},
    {"OfxImageEffectPropProjectSize", kD, 2},
    {"OfxImageEffectPropProjectOffset", kD, 2},
    {"OfxImageEffectPropProjectExtent", kD, 2},
    {"OfxImageEffectPropPixelAspectRatio", kD},
    {"OfxImageEffectInstancePropEffectDuration", kD},
    {"OfxImageEffectPropFrameRate", kD},
    {"OfxPropIsInteractive", kI},
};

constexpr PropertySpec kClip[] = {
    {"OfxPropType", kS},
    {"OfxPropName", kS},
    {"OfxPropLabel", kS, 1, true},
    {"OfxPropShortLabel", kS, 1, true},
    {"OfxPropLongLabel", kS, 1, true},
    {"OfxImageEffectPropSupportedComponents", kS, 0, true},
    {"OfxImageEffectPropTemporalClipAccess", kI, 1, true},
    {"OfxImageClipPropOptional", kI, 1, true},
    {"OfxImageClipPropIsMask", kI, 1, true},
    {"OfxImageClipPropFieldExtraction", kS, 1, true},
    {"OfxImageEffectPropSupportsTiles", kI, 1, true},
};

constexpr PropertySpec kClipInstance[] = {
    {"OfxPropType", kS},
    {"OfxPropName", kS},
    {"OfxImageEffectPropPixelDepth", kS},
    {"OfxImageEffectPropComponents", kS},
    {"OfxImageClipPropUnmappedPixelDepth", kS},
    {"OfxImageClipPropUnmappedComponents", kS},
    {"OfxImageEffectPropPreMultiplication", kS},
    {"OfxImagePropPixelAspectRatio", kD},
    {"OfxImageEffectPropFrameRate", kD},
    {"OfxImageEffectPropFrameRange", kD, 2},
    {"OfxImageClipPropFieldOrder", kS},
    {"OfxImageClipPropConnected", kI},
};

constexpr PropertySpec kImage[] = {
    {"OfxPropType", kS},
    {"OfxImageEffectPropPixelDepth", kS},
    {"OfxImageEffectPropComponents", kS},
    {"OfxImageEffectPropPreMultiplication", kS},
    {"OfxImageEffectPropRenderScale", kD, 2},
    {"OfxImagePropPixelAspectRatio", kD},
    {"OfxImagePropData", kP},
    {"OfxImagePropBounds", kI, 4},
    {"OfxImagePropRegionOfDefinition", kI, 4},
    {"OfxImagePropRowBytes", kI},
    {"OfxImagePropField", kS},
    {"OfxImagePropUniqueIdentifier", kS},
};

constexpr PropertySpec kArguments[] = {
    {"OfxImageEffectPropContext", kS},
    {"OfxPropChangeReason", kS},
    {"OfxPropType", kS},
    {"OfxPropName", kS, 1, true},
    {"OfxPropTime", kD, 1, true},
    {"OfxImageEffectPropRenderScale", kD, 2},
    {"OfxImageEffectPropRenderWindow", kI, 4},
    {"OfxImageEffectPropFieldToRender", kS},
    {"OfxImageEffectPropFrameRange", kD, 2},
    {"OfxImageEffectPropFrameStep", kD},
    {"OfxImageEffectPropRegionOfDefinition", kD, 4, true},
    {"OfxImageEffectPropRegionOfInterest", kD, 4},
    {"OfxImageClipPropRoI_Source", kD, 4, true},
    {"OfxImageClipPropRoI_Mask", kD, 4, true},
    {"OfxImageClipPropComponents_Output", kS, 1, true},
    {"OfxImageClipPropDepth_Output", kS, 1, true},
    {"OfxImageEffectPropPreMultiplication", kS, 1, true},
    {"OfxImageEffectPropSequentialRenderStatus", kI},
    {"OfxImageEffectPropInteractiveRenderStatus", kI},
    {"OfxImageEffectPropRenderQualityDraft", kI},
};

} // namespace

const PropertySpec* PropertyBag::specOf(const std::string& name) const {
    const auto found = std::find_if(specs_.begin(), specs_.end(),
                                    [&name](const PropertySpec& each) { return name == each.name; });
    return found == specs_.end() ? nullptr : &*found;
}

std::vector<std::string> PropertyBag::texts(const std::string& name) {
    std::vector<std::string> texts;
    for (const PropertyValue& value : values_[name]) {
        texts.push_back(std::get<std::string>(value));
    }
    return texts;
}

std::span<const PropertySpec> hostProperties() {
    return kHost;
}

std::span<const PropertySpec> effectProperties() {
    return kEffect;
}

std::span<const PropertySpec> instanceProperties() {
    return kInstance;
}

std::span<const PropertySpec> clipProperties() {
    return kClip;
}

std::span<const PropertySpec> clipInstanceProperties() {
    return kClipInstance;
}

std::span<const PropertySpec> imageProperties() {
    return kImage;
}

std::span<const PropertySpec> argumentProperties() {
    return kArguments;
}

std::vector<PropertySpec> paramProperties(const std::string& type, bool isInstance) {
    const bool isGroup = type == "OfxParamTypeGroup";
    const bool isWhole = type == "OfxParamTypeInteger";
    const bool isColor = type == "OfxParamTypeRGB";
    const bool isNumber = type == "OfxParamTypeDouble";
    const bool isChoice = type == "OfxParamTypeChoice";
    const bool ours = !isInstance;
    std::vector<PropertySpec> specs = {
        {"OfxPropType", kS},
        {"OfxPropName", kS},
        {"OfxPropLabel", kS, 1, true},
        {"OfxPropShortLabel", kS, 1, true},
        {"OfxPropLongLabel", kS, 1, true},
        {"OfxParamPropType", kS},
        {"OfxParamPropSecret", kI, 1, true},
        {"OfxParamPropHint", kS, 1, true},
        {"OfxParamPropScriptName", kS, 1, ours},
        {"OfxParamPropParent", kS, 1, ours},
        {"OfxParamPropEnabled", kI, 1, isInstance}, // in a descriptor some hosts take it for ever
    };
    if (isGroup) {
        specs.push_back({"OfxParamPropGroupOpen", kI, 1, ours});
        return specs;
    }
    const PropertyType type1 = isNumber || isColor ? kD : kI;
    const int dimension = isColor ? 3 : 1;
    specs.push_back({"OfxParamPropDefault", type1, dimension, true});
    specs.push_back({"OfxParamPropAnimates", kI, 1, ours});
    specs.push_back({"OfxParamPropPersistant", kI, 1, ours});
    specs.push_back({"OfxParamPropEvaluateOnChange", kI, 1, true});
    specs.push_back({"OfxParamPropCanUndo", kI, 1, ours});
    if (isWhole || isNumber || isColor) {
        for (const char* const limit :
             {"OfxParamPropMin", "OfxParamPropMax", "OfxParamPropDisplayMin", "OfxParamPropDisplayMax"}) {
            specs.push_back({limit, type1, dimension, true});
        }
    }
    if (isNumber || isColor) {
        specs.push_back({"OfxParamPropIncrement", kD, 1, true});
        specs.push_back({"OfxParamPropDigits", kI, 1, true});
    }
    if (isChoice) {
        specs.push_back({"OfxParamPropChoiceOption", kS, 0, ours});
    }
    return specs;
}

} // namespace kovalune::test
