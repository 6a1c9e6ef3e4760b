#include "cli/text/ColorsText.h"

#include "pictures/PixelValues.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace kovalune::cli {

namespace {

using Json = nlohmann::ordered_json;
using pictures::ColorRegion;
using pictures::ShotRegion;

class ColorsDocument {
public:
    explicit ColorsDocument(const ColorsFound& found) : found_(found) {
        for (const ShotRegion& each : found.regions) {
            followed_.placeOf(each.region.color.bits);
        }
    }

    Json colorJson(const pictures::FlatColor& color) const {
        Json json = {
            {"color", nameOf(color)},
            {"exact", pictures::exactText(color, found_.type)},
            {"pixels", color.pixels},
            {"share", static_cast<double>(color.pixels) / static_cast<double>(found_.counted.pixels)}};
        const std::optional<std::size_t> place = followed_.find(color.bits);
        if (found_.where && place) {
            addPlaces(json, found_.regions[*place]);
        }
        return json;
    }

    Json pairJson(const pictures::ColorPair& pair) const {
        return {{"neighbour", nameOf(pair.neighbour)},
                {"second", nameOf(pair.second)},
                {"kind", pair.isHighlight() ? "highlight" : "shadow"},
                {"border", pair.border},
                {"borderPercent", pair.borderShare},
                {"hueApartDegrees", pair.hueApart},
                {"lightnessApartPercent", std::abs(pair.lightnessApart)}};
    }

private:
    std::string nameOf(const pictures::FlatColor& color) const {
        return pictures::hexText(pictures::nearestRgb(color, found_.type));
    }

    std::string nameOf(std::size_t place) const { return nameOf(found_.regions[place].region.color); }

    void addPlaces(Json& json, const ShotRegion& each) const {
        const ColorRegion& region = each.region;
        json["box"] = {region.box.left, region.box.top, region.box.width, region.box.height};
        json["pieces"] = region.pieces;
        json["outline"] = region.outline;
        json["thickness"] = pictures::thicknessOf(region);
        json["borders"] = Json::array();
        for (const pictures::ColorBorder& border : region.borders) {
            json["borders"].push_back({{"color", nameOf(border.neighbour)}, {"length", border.length}});
        }
        json["toOtherColors"] = region.toOthers;
        json["toTransparent"] = region.toTransparent;
        json["toEdge"] = region.toEdge;
        if (found_.frames > 0) {
            json["frames"] = Json::array();
            for (const pictures::FrameRange& range : each.frames) {
                json["frames"].push_back({range.first, range.last});
            }
        }
    }

    const ColorsFound& found_;
    pictures::ColorTable followed_;
};

} // namespace

std::string colorsJson(const ColorsFound& found, std::size_t listed, const std::string& name) {
    const ColorsDocument document(found);
    Json json = {
        {"input", name}, {"pixels", found.counted.pixels}, {"transparent", found.counted.transparent}};
    if (found.frames > 0) {
        json["frames"] = found.frames;
    }
    json["colorCount"] = found.counted.colors.size();
    json["colors"] = Json::array();
    for (std::size_t i = 0; i < listed; ++i) {
        json["colors"].push_back(document.colorJson(found.counted.colors[i]));
    }
    if (found.where) {
        json["pairs"] = Json::array();
        for (const pictures::ColorPair& pair : found.pairs) {
            json["pairs"].push_back(document.pairJson(pair));
        }
    }
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace kovalune::cli
