#include "cli/Commands.h"

#include "cli/commands/LookedPictures.h"
#include "cli/files/ColorsPicture.h"
#include "cli/text/ColorsText.h"
#include "cli/text/Swatch.h"
#include "pictures/FlatColors.h"
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
    if (where) {
        for (pictures::ColorRegion& region : pictures::regionsOf(picture, found.counted)) {
            found.regions.push_back({std::move(region), {}});
        }
    }
    return found;
}

/// All pictures have samples of one type: the same colour is not to be two.
void checkType(const shots::SequencePlan& plan, std::size_t index, pictures::SampleType type,
               pictures::SampleType first) {
    if (type != first) {
        throw text::Failure(text::FailureKind::kFile,
                            "the colours of " + text::inQuotes(plan.frames[index].input) + " (" +
                                pictures::depthText(type) + ") are not counted with those of " +
                                text::inQuotes(plan.frames.front().input) + " (" +
                                pictures::depthText(first) + ")");
    }
}

ColorsFound colorsOf(const shots::SequencePlan& plan, const ColorsArguments& arguments) {
    ColorsFound found;
    pictures::ShotColors shot;
    lookAtAll(plan, {arguments.alphaKind, arguments.linear, arguments.decoding},
              [&](const pictures::Picture& picture, std::size_t index) {
                  if (plan.isOnePicture) {
                      found = colorsOf(picture, arguments.where);
                      return;
                  }
                  found.type = index == 0 ? picture.sampleType : found.type;
                  checkType(plan, index, picture.sampleType, found.type);
                  const pictures::FlatColors counted = pictures::flatColorsOf(picture);
                  shot.add(counted,
                           arguments.where ? pictures::regionsOf(picture, counted)
                                           : std::vector<pictures::ColorRegion>(),
                           lookedNumber(plan, index));
              });
    if (!plan.isOnePicture) {
        found.counted = shot.counted();
        found.regions = shot.regions();
        found.frames = plan.frames.size();
        found.frameWidth = plan.isSequence ? plan.width : 1;
    }
    found.where = arguments.where;
    std::vector<pictures::ColorRegion> regions;
    for (const pictures::ShotRegion& each : found.regions) {
        regions.push_back(each.region);
    }
    found.pairs = pictures::pairsIn(regions, found.type);
    return found;
}

std::string textOf(const ColorsArguments& arguments, const shots::SequencePlan& plan) {
    const ColorsFound found = colorsOf(plan, arguments);
    const std::size_t listed = listedOf(found, arguments.most);
    if (arguments.output) {
        draw(found, listed, *arguments.output, arguments.encoding);
    }
    return arguments.json ? colorsJson(found, listed, lookedName(arguments.pictures))
                          : colorsText(found, listed, terminalColors());
}

} // namespace

std::string colorsText(const ColorsArguments& arguments) {
    if (arguments.output && arguments.pictures.inputs.size() == 1) {
        shots::checkDrawnFile(*arguments.output, {arguments.pictures.inputs.front()}, arguments.force);
    }
    const shots::SequencePlan plan = lookedPlan(arguments.pictures);
    if (arguments.output) {
        shots::checkDrawnFile(*arguments.output, lookedFiles(plan), arguments.force);
    }
    return textOf(arguments, plan);
}

} // namespace kovalune::cli
