#include "cli/ColorsCommand.h"

#include "cli/AtomicFile.h"
#include "cli/ColorsPicture.h"
#include "cli/DrawnFile.h"
#include "cli/Failure.h"
#include "cli/FlatColors.h"
#include "cli/NumberText.h"
#include "cli/PictureMemory.h"
#include "cli/Swatch.h"
#include "cli/picture/PictureFile.h"
#include "cli/picture/PixelValues.h"

#include <algorithm>

namespace kovalune {

namespace {

constexpr int kShareDigits = 3;
constexpr std::size_t kShareLetters = 9; // "100.000 %"

std::string rightAligned(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

class ColorList {
public:
    ColorList(const FlatColors& counted, SampleType type, int most)
        : counted_(counted), type_(type), listed_(counted.colors.size()) {
        if (most > 0) {
            listed_ = std::min(listed_, static_cast<std::size_t>(most));
        }
    }

    std::string text(TerminalColors terminal) const {
        std::string lines;
        for (std::size_t i = 0; i < listed_; ++i) {
            const FlatColor& color = counted_.colors[i];
            const auto rgb = nearestRgb(color, type_);
            const std::string patch = swatch(rgb, terminal);
            lines += shareAndCount(color.pixels) + hexText(rgb) + (patch.empty() ? "" : "  " + patch) +
                     (type_ == SampleType::kUint8 ? "" : "  " + exactText(color, type_)) + '\n';
        }
        lines += moreText();
        if (counted_.transparent > 0) {
            lines += shareAndCount(counted_.transparent) + "transparent\n";
        }
        return lines;
    }

    Picture picture() const {
        std::vector<Patch> patches;
        for (std::size_t i = 0; i < listed_; ++i) {
            const auto rgb = nearestRgb(counted_.colors[i], type_);
            patches.push_back(
                {DrawnColor{rgb[0], rgb[1], rgb[2]},
                 hexText(rgb) + ' ' + rightAligned(share(counted_.colors[i].pixels), kShareLetters)});
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
        return fixedText(100.0 * part, kShareDigits) + " %";
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

    const FlatColors& counted_;
    SampleType type_;
    std::size_t listed_;
};

void draw(const ColorList& list, const std::string& output) {
    if (!list.fitsAPicture()) {
        throw Failure(ExitCode::kUsage, "cannot draw more than " + std::to_string(kMostPatches - 1) +
                                            " colours as " + inQuotes(output) + "; --most lists fewer");
    }
    withMemoryFor(output, [&] { writeAtomically(output, encodeDrawn(output, list.picture())); });
}

std::string textOf(const ColorsArguments& arguments) {
    Picture picture = readPicture(arguments.input);
    if (arguments.alphaKind) {
        picture.alphaKind = *arguments.alphaKind;
    }
    const FlatColors counted = flatColorsOf(picture);
    const ColorList list(counted, picture.sampleType, arguments.most);
    if (arguments.output) {
        draw(list, *arguments.output);
    }
    return list.text(terminalColors());
}

} // namespace

std::string colorsText(const ColorsArguments& arguments) {
    if (arguments.output) {
        checkDrawnFile(*arguments.output, {arguments.input}, arguments.force);
    }
    return withMemoryFor(arguments.input, [&arguments] { return textOf(arguments); });
}

} // namespace kovalune
