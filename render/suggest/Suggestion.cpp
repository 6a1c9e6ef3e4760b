#include "render/suggest/Suggestion.h"

#include "pictures/PictureConversion.h"
#include "text/MessageText.h"

namespace kovalune::suggest {

namespace {

using pictures::AlphaKind;
using pictures::SampleType;

/// Straight, in 8 bits.
pictures::Picture asSettingsSeeIt(const pictures::Picture& picture) {
    const host::Image image = pictures::imageOf(picture, PF_PixelFormat_ARGB32);
    return pictures::pictureOf(image, image, picture, {SampleType::kUint8, AlphaKind::kStraight});
}

} // namespace

void SuggestionFigures::add(const pictures::Picture& picture, int64_t frame) {
    const auto addEight = [&](const pictures::Picture& eight) {
        const pictures::FlatColors counted = pictures::flatColorsOf(eight);
        colors_.add(counted, pictures::regionsOf(eight, counted), frame);
    };
    const bool isStraight =
        !pictures::hasAlpha(picture.channels) || picture.alphaKind == AlphaKind::kStraight;
    if (picture.sampleType == SampleType::kUint8 && isStraight) {
        addEight(picture);
    } else {
        addEight(asSettingsSeeIt(picture));
    }
    ++frames_;
}

Suggestion SuggestionFigures::suggestion(const std::string& name, const pictures::PairRules& rules) const {
    Suggestion result;
    for (pictures::ShotRegion& each : colors_.regions()) {
        result.regions.push_back(std::move(each.region));
    }
    result.pairs = pictures::pairsIn(result.regions, SampleType::kUint8, rules);
    result.passes = suggestedPasses(result.regions, result.pairs, rules);
    if (!result.passes.empty()) {
        result.settings = suggestedText(result.passes, result.regions,
                                        {text::printable(name), frames_, SampleType::kUint8}, rules);
    }
    return result;
}

} // namespace kovalune::suggest
