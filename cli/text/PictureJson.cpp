#include "cli/text/PictureJson.h"

#include "effect/share/StandardParts.h"
#include "pictures/PixelValues.h"
#include "text/NumberText.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace kovalune::cli {

namespace {

using Json = nlohmann::ordered_json;

Json alphaJson(const pictures::Picture& picture) {
    if (!pictures::hasAlpha(picture.channels)) {
        return nullptr;
    }
    return picture.alphaKind == pictures::AlphaKind::kStraight ? "straight" : "premultiplied";
}

} // namespace

Json formJson(const pictures::Picture& picture) {
    return {{"width", picture.width},
            {"height", picture.height},
            {"channels", pictures::channelsText(picture.channels)},
            {"samples", pictures::depthText(picture.sampleType)},
            {"alpha", alphaJson(picture)}};
}

Json pixelJson(const pictures::Picture& picture, std::size_t pixel) {
    Json json = Json::object();
    std::size_t index = pixel * pictures::channelCount(picture.channels);
    for (const char* const name : pictures::channelNames(picture.channels)) {
        const double value = pictures::sampleValue(picture, index);
        if (!std::isfinite(value)) {
            json[name] = pictures::sampleText(picture, index);
        } else if (pictures::isFloat(picture.sampleType)) {
            json[name] = numberJson(static_cast<float>(value));
        } else {
            json[name] = static_cast<int>(value);
        }
        ++index;
    }
    return json;
}

Json numberJson(float number) {
    const std::string text = text::shortestText(number);
    double digits = 0.0;
    fromChars(text.data(), text.data() + text.size(), digits);
    return std::isfinite(number) ? Json(digits) : Json(text);
}

Json numberJson(double number) {
    return std::isfinite(number) ? Json(number) : Json(text::shortestText(number));
}

} // namespace kovalune::cli
