#include "cli/Commands.h"

#include "cli/files/ColorsPicture.h"
#include "cli/text/Swatch.h"
#include "pictures/FlatColors.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "pictures/PixelValues.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/DrawnFile.h"
#include "text/Failure.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <algorithm>

namespace kovalune::cli {

namespace {

constexpr int kShareDigits = 3;
constexpr std::size_t kShareLetters = 9; // "100.000 %"

std::string rightAligned(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

class ColorList {
public:
    ColorList(const pictures::FlatColors& counted, pictures::SampleType type, int most)
        : counted_(counted), type_(type), listed_(counted.colors.size()) {
        if (most > 0) {
            listed_ = std::min(listed_, static_cast<std::size_t>(most));
        }
    }

    std::string text(TerminalColors terminal) const {
        std::string lines;
        for (std::size_t i = 0; i < listed_; ++i) {
            const pictures::FlatColor& color = counted_.colors[i];
            const auto rgb = pictures::nearestRgb(color, type_);
            const std::string patch = swatch(rgb, terminal);
            lines += shareAndCount(color.pixels) + pictures::hexText(rgb) +
                     (patch.empty() ? "" : "  " + patch) +
                     (type_ == pictures::SampleType::kUint8 ? "" : "  " + pictures::exactText(color, type_)) +
                     '\n';
        }
        lines += moreText();
        if (counted_.transparent > 0) {
            lines += shareAndCount(counted_.transparent) + "transparent\n";
        }
        return lines;
    }

    pictures::Picture picture() const {
        std::vector<Patch> patches;
        for (std::size_t i = 0; i < listed_; ++i) {
            const auto rgb = pictures::nearestRgb(counted_.colors[i], type_);
            patches.push_back({pictures::DrawnColor{rgb[0], rgb[1], rgb[2]},
                               pictures::hexText(rgb) + ' ' +
                                   rightAligned(share(counted_.colors[i].pixels), kShareLetters)});
        }
        if (counted_.transparent > 0) {
            patches.push_back({std::nullopt, "transparent " + share(counted_.transparent)});
        }
        return picturedPatches(patches);
    }

    /// Transparent pixels have a patch too.
    bool fitsAPicture() const { return listed_ < kMostPatches; }

private:
    std::string share(std::size_t pixels) const {
        const double part = static_cast<double>(pixels) / static_cast<double>(counted_.pixels);
        return text::fixedText(100.0 * part, kShareDigits) + " %";
    }

    std::string shareAndCount(std::size_t pixels) const {
        const std::size_t width = std::to_string(counted_.pixels).size();
        return rightAligned(share(pixels), kShareLetters) + "  " +
               rightAligned(std::to_string(pixels), width) + "  ";
    }

    std::string moreText() const {
        const std::size_t more = counted_.colors.size() - listed_;
        if (more == 0) {
            return {};
        }
        std::size_t pixels = 0;
        for (std::size_t i = listed_; i < counted_.colors.size(); ++i) {
            pixels += counted_.colors[i].pixels;
        }
        return shareAndCount(pixels) + "in " + std::to_string(more) +
               (more == 1 ? " more colour\n" : " more colours\n");
    }

    const pictures::FlatColors& counted_;
    pictures::SampleType type_;
    std::size_t listed_;
};

void draw(const ColorList& list, const std::string& output, const pictures::EncodeOptions& encoding) {
    if (!list.fitsAPicture()) {
        throw text::Failure(text::FailureKind::kUsage, "cannot draw more than " +
                                                           std::to_string(kMostPatches - 1) + " colours as " +
                                                           text::inQuotes(output) + "; --most lists fewer");
    }
    pictures::withMemoryFor(output, [&] {
        shots::writeAtomically(output, shots::encodeDrawn(output, list.picture(), encoding));
    });
}

std::string textOf(const ColorsArguments& arguments) {
    pictures::Picture picture = pictures::readPicture(arguments.input);
    if (arguments.alphaKind) {
        picture.alphaKind = *arguments.alphaKind;
    }
    const pictures::FlatColors counted = pictures::flatColorsOf(picture);
    const ColorList list(counted, picture.sampleType, arguments.most);
    if (arguments.output) {
        draw(list, *arguments.output, arguments.encoding);
    }
    return list.text(terminalColors());
}

} // namespace

std::string colorsText(const ColorsArguments& arguments) {
    if (arguments.output) {
        shots::checkDrawnFile(*arguments.output, {arguments.input}, arguments.force);
    }
    return pictures::withMemoryFor(arguments.input, [&arguments] { return textOf(arguments); });
}

} // namespace kovalune::cli
