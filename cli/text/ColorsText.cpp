#include "cli/text/ColorsText.h"

#include "pictures/PixelValues.h"
#include "render/shots/FramePattern.h"
#include "text/NumberText.h"

#include <algorithm>
#include <cmath>

namespace kovalune::cli {

namespace {

using pictures::ColorPair;
using pictures::ColorRegion;
using pictures::FlatColor;
using pictures::ShotRegion;

constexpr int kShareDigits = 3;
constexpr std::size_t kShareLetters = 9; // "100.000 %"
constexpr std::size_t kMostNeighbours = 6;
constexpr char kIndent[] = "             ";

std::string rightAligned(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string tenths(double number) {
    return text::fixedText(number, 1);
}

class ColorLines {
public:
    ColorLines(const ColorsFound& found, TerminalColors terminal) : found_(found), terminal_(terminal) {
        for (const ShotRegion& each : found.regions) {
            followed_.placeOf(each.region.color.bits);
        }
    }

    std::string lineOf(const FlatColor& color) const {
        const auto rgb = pictures::nearestRgb(color, found_.type);
        const std::string patch = swatch(rgb, terminal_);
        return shareAndCount(color.pixels) + pictures::hexText(rgb) + (patch.empty() ? "" : "  " + patch) +
               (found_.type == pictures::SampleType::kUint8
                    ? ""
                    : "  " + pictures::exactText(color, found_.type)) +
               '\n';
    }

    std::string placesOf(const FlatColor& color) const {
        const std::optional<std::size_t> place = followed_.find(color.bits);
        if (!place) {
            return kIndent + std::string("not followed: too many colours are more frequent\n");
        }
        const ShotRegion& each = found_.regions[*place];
        const ColorRegion& region = each.region;
        const pictures::RegionBox& box = region.box;
        std::string text = kIndent + std::string("in ") + std::to_string(box.left) + ',' +
                           std::to_string(box.top) + ',' + std::to_string(box.width) + ',' +
                           std::to_string(box.height) + ", " + std::to_string(region.pieces) +
                           (region.pieces == 1 ? " piece, " : " pieces, ") +
                           tenths(pictures::thicknessOf(region)) + " thick, outline " +
                           std::to_string(region.outline) + '\n';
        text += kIndent + std::string("borders on ") + bordersOf(region) + '\n';
        if (found_.frames > 0) {
            text += kIndent + std::string("frames ") + rangesText(each.frames) + '\n';
        }
        return text;
    }

    std::string pairLine(const ColorPair& pair) const {
        return "  " + nameOf(pair.second) + (pair.isHighlight() ? "  highlight on  " : "  shadow of     ") +
               nameOf(pair.neighbour) + "  border " + std::to_string(pair.border) + ", " +
               tenths(pair.borderShare) + " % of its outline; hue " + tenths(pair.hueApart) +
               " degrees apart, " + tenths(std::abs(pair.lightnessApart)) +
               (pair.isHighlight() ? " % lighter\n" : " % darker\n");
    }

    std::string shareAndCount(std::size_t pixels) const {
        const std::size_t width = std::to_string(found_.counted.pixels).size();
        return shareText(pixels, found_.counted.pixels) + "  " + rightAligned(std::to_string(pixels), width) +
               "  ";
    }

private:
    std::string nameOf(std::size_t place) const {
        return pictures::hexText(pictures::nearestRgb(found_.regions[place].region.color, found_.type));
    }

    /// The longest first; what is no colour at the end.
    std::string bordersOf(const ColorRegion& region) const {
        std::string text;
        const auto add = [&text](const std::string& what, uint64_t length) {
            if (length > 0) {
                text += (text.empty() ? "" : ", ") + what + ' ' + std::to_string(length);
            }
        };
        uint64_t rest = 0;
        for (std::size_t i = 0; i < region.borders.size(); ++i) {
            if (i < kMostNeighbours) {
                add(nameOf(region.borders[i].neighbour), region.borders[i].length);
            } else {
                rest += region.borders[i].length;
            }
        }
        add(std::to_string(region.borders.size() - std::min(region.borders.size(), kMostNeighbours)) +
                " more colours",
            rest);
        add("colours not followed", region.toOthers);
        add("transparent", region.toTransparent);
        add("the picture's edge", region.toEdge);
        return text;
    }

    /// As --frames takes them.
    std::string rangesText(const std::vector<pictures::FrameRange>& frames) const {
        std::string text;
        for (const pictures::FrameRange& range : frames) {
            text += text.empty() ? "" : ",";
            text += shots::frameText(range.first, found_.frameWidth);
            if (range.last != range.first) {
                text += '-' + shots::frameText(range.last, found_.frameWidth);
            }
        }
        return text;
    }

    const ColorsFound& found_;
    TerminalColors terminal_;
    pictures::ColorTable followed_; ///< of the regions, in their order
};

std::string moreText(const ColorsFound& found, std::size_t listed, const ColorLines& lines) {
    const std::size_t more = found.counted.colors.size() - listed;
    std::size_t pixels = found.counted.untold;
    for (std::size_t i = listed; i < found.counted.colors.size(); ++i) {
        pixels += found.counted.colors[i].pixels;
    }
    if (pixels == 0) {
        return {};
    }
    return lines.shareAndCount(pixels) + "in " + std::to_string(more) +
           (found.counted.untold > 0 ? " more colours at least\n"
            : more == 1              ? " more colour\n"
                                     : " more colours\n");
}

} // namespace

std::string shareText(std::size_t part, std::size_t whole) {
    const double share = static_cast<double>(part) / static_cast<double>(whole);
    return rightAligned(text::fixedText(100.0 * share, kShareDigits) + " %", kShareLetters);
}

std::string colorsText(const ColorsFound& found, std::size_t listed, TerminalColors terminal) {
    const ColorLines lines(found, terminal);
    std::string text;
    for (std::size_t i = 0; i < listed; ++i) {
        text += lines.lineOf(found.counted.colors[i]);
        text += found.where ? lines.placesOf(found.counted.colors[i]) : "";
    }
    text += moreText(found, listed, lines);
    if (found.counted.transparent > 0) {
        text += lines.shareAndCount(found.counted.transparent) + "transparent\n";
    }
    for (const ColorPair& pair : found.pairs) {
        text += &pair == found.pairs.data() ? "Pairs that look like light and shadow:\n" : "";
        text += lines.pairLine(pair);
    }
    return text;
}

} // namespace kovalune::cli
