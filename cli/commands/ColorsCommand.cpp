#include "cli/Commands.h"

#include "cli/commands/RenderPicture.h"
#include "cli/files/ColorsPicture.h"
#include "cli/text/ColorsText.h"
#include "cli/text/Swatch.h"
#include "pictures/FlatColors.h"
#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "pictures/PixelValues.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/DrawnFile.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>

namespace kovalune::cli {

namespace {

std::size_t listedOf(const ColorsFound& found, int most) {
    const std::size_t all = found.counted.colors.size();
    return most > 0 ? std::min(all, static_cast<std::size_t>(most)) : all;
}

pictures::Picture palette(const ColorsFound& found, std::size_t listed) {
    const pictures::FlatColors& counted = found.counted;
    std::vector<Patch> patches;
    for (std::size_t i = 0; i < listed; ++i) {
        const auto rgb = pictures::nearestRgb(counted.colors[i], found.type);
        patches.push_back(
            {pictures::DrawnColor{rgb[0], rgb[1], rgb[2]},
             pictures::hexText(rgb) + ' ' + shareText(counted.colors[i].pixels, counted.pixels)});
    }
    if (counted.transparent > 0) {
        std::string share = shareText(counted.transparent, counted.pixels);
        share.erase(0, share.find_first_not_of(' '));
        patches.push_back({std::nullopt, "transparent " + share});
    }
    return picturedPatches(patches);
}

void draw(const ColorsFound& found, std::size_t listed, const std::string& output,
          const pictures::EncodeOptions& encoding) {
    if (listed >= kMostPatches) { // transparent pixels have a patch too
        throw text::Failure(text::FailureKind::kUsage, "cannot draw more than " +
                                                           std::to_string(kMostPatches - 1) + " colours as " +
                                                           text::inQuotes(output) + "; --most lists fewer");
    }
    pictures::withMemoryFor(output, [&] {
        shots::writeAtomically(output, shots::encodeDrawn(output, palette(found, listed), encoding));
    });
}

ColorsFound colorsOf(const pictures::Picture& picture, bool where) {
    ColorsFound found;
    found.counted = pictures::flatColorsOf(picture);
    found.type = picture.sampleType;
    found.where = where;
    if (where) {
        const std::vector<pictures::ColorRegion> regions = pictures::regionsOf(picture, found.counted);
        found.pairs = pictures::pairsIn(regions, found.type);
        for (const pictures::ColorRegion& region : regions) {
            found.regions.push_back({region, {}});
        }
    }
    return found;
}

std::string textOf(const ColorsArguments& arguments) {
    pictures::Picture picture = pictures::readPicture(arguments.input, arguments.decoding);
    noteLosses(picture, arguments.input);
    if (arguments.alphaKind) {
        picture.alphaKind = *arguments.alphaKind;
    }
    if (arguments.linear) {
        picture.isLinear = true;
        picture = pictures::displayed(picture);
    }
    const ColorsFound found = colorsOf(picture, arguments.where);
    const std::size_t listed = listedOf(found, arguments.most);
    if (arguments.output) {
        draw(found, listed, *arguments.output, arguments.encoding);
    }
    return arguments.json ? colorsJson(found, listed, arguments.input)
                          : colorsText(found, listed, terminalColors());
}

} // namespace

std::string colorsText(const ColorsArguments& arguments) {
    if (arguments.output) {
        shots::checkDrawnFile(*arguments.output, {arguments.input}, arguments.force);
    }
    return pictures::withMemoryFor(arguments.input, [&arguments] { return textOf(arguments); });
}

} // namespace kovalune::cli
