#include "cli/text/PickedText.h"

#include "cli/text/PictureJson.h"
#include "pictures/PixelValues.h"
#include "text/NumberText.h"

#include <nlohmann/json.hpp>

namespace kovalune::cli {

namespace {

using Json = nlohmann::ordered_json;

std::string effectText(const EffectPixel& pixel) {
    const auto [red, green, blue, alpha] = pixel.values;
    return "red " + text::shortestText(red) + ", green " + text::shortestText(green) + ", blue " +
           text::shortestText(blue) + ", alpha " + text::shortestText(alpha) + " (white is " +
           text::shortestText(pixel.white) + ")";
}

std::string textOf(const PickedPixel& picked, const pictures::Picture& picture) {
    std::string text = "Pixel       " + std::to_string(picked.point.x) + ',' +
                       std::to_string(picked.point.y) + "\nPicture     " + pictures::formText(picture) +
                       "\nFile        " + pictures::pixelText(picked.file, 0) + "\nEffect      " +
                       effectText(picked.effect) + "\nColour      " +
                       pictures::hexText(picked.effect.nearest) + '\n';
    if (picked.effect.matched != picked.effect.nearest) {
        text += "Matched as  " + pictures::hexText(picked.effect.matched) + '\n';
    }
    return text + "Hue         " + text::fixedText(picked.hue, 2) + " degrees\n" + //
           "Lightness   " + text::fixedText(picked.lightness, 2) + " %\n" +        //
           "Saturation  " + text::fixedText(picked.saturation, 2) + " %\n";
}

} // namespace

std::string pickedText(const std::vector<PickedPixel>& picked, const pictures::Picture& picture) {
    std::string text;
    for (const PickedPixel& each : picked) {
        text += text.empty() ? "" : "\n";
        text += textOf(each, picture);
    }
    return text;
}

std::string pickedJson(const std::vector<PickedPixel>& picked, const pictures::Picture& picture,
                       const std::string& name) {
    Json json = {{"input", name}, {"picture", formJson(picture)}, {"points", Json::array()}};
    for (const PickedPixel& each : picked) {
        const auto [red, green, blue, alpha] = each.effect.values;
        json["points"].push_back({{"x", each.point.x},
                                  {"y", each.point.y},
                                  {"file", pixelJson(each.file, 0)},
                                  {"effect",
                                   {{"red", numberJson(red)},
                                    {"green", numberJson(green)},
                                    {"blue", numberJson(blue)},
                                    {"alpha", numberJson(alpha)},
                                    {"white", each.effect.white}}},
                                  {"color", pictures::hexText(each.effect.nearest)},
                                  {"matchedAs", pictures::hexText(each.effect.matched)},
                                  {"hue", each.hue},
                                  {"lightness", each.lightness},
                                  {"saturation", each.saturation}});
    }
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace kovalune::cli
