#include "cli/commands/ShotComparison.h"

#include "cli/text/ComparedShotsText.h"
#include "pictures/PictureDifference.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "render/shots/FramePattern.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <iterator>

namespace kovalune::cli {

namespace {

pictures::Picture readFrame(const shots::SequenceInput& input, int64_t frame,
                            const pictures::DecodeOptions& decoding) {
    const std::string file = input.pattern->nameOf(frame);
    return pictures::withMemoryFor(file, [&] { return pictures::readPicture(file, decoding); });
}

bool has(const shots::SequenceInput& input, int64_t frame) {
    return std::binary_search(input.frames.begin(), input.frames.end(), frame);
}

/// Those of either side, or of the list.
std::vector<int64_t> framesOf(const CompareArguments& arguments, const shots::SequenceInput& a,
                              const shots::SequenceInput& b) {
    if (!arguments.frames) {
        std::vector<int64_t> frames;
        std::set_union(a.frames.begin(), a.frames.end(), b.frames.begin(), b.frames.end(),
                       std::back_inserter(frames));
        return frames;
    }
    for (const int64_t frame : *arguments.frames) {
        if (!has(a, frame) && !has(b, frame)) {
            throw text::Failure(text::FailureKind::kFile, "neither " + text::inQuotes(arguments.first) +
                                                              " nor " + text::inQuotes(arguments.second) +
                                                              " has frame " +
                                                              shots::frameText(frame, a.pattern->width()));
        }
    }
    return *arguments.frames;
}

ComparedFrame compareFrame(const CompareArguments& arguments, const shots::SequenceInput& a,
                           const shots::SequenceInput& b, int64_t frame) {
    const pictures::Picture first = readFrame(a, frame, arguments.decoding);
    const pictures::Picture second = readFrame(b, frame, arguments.decoding);
    ComparedFrame compared;
    compared.frame = frame;
    compared.pixels = std::size_t{first.width} * first.height;
    if (first.width == second.width && first.height == second.height) {
        compared.difference = pictures::differenceOf(
            first, second, [](std::size_t) {}, arguments.tolerance);
    }
    return compared;
}

} // namespace

Comparison compareShots(const CompareArguments& arguments, const shots::SequenceInput& a,
                        const shots::SequenceInput& b) {
    ComparedShots compared;
    compared.nameA = a.pattern->shown();
    compared.nameB = b.pattern->shown();
    compared.width = std::max(a.pattern->width(), b.pattern->width());
    compared.tolerance = arguments.tolerance;
    for (const int64_t frame : framesOf(arguments, a, b)) {
        if (!has(b, frame)) {
            compared.onlyInA.push_back(frame);
        } else if (!has(a, frame)) {
            compared.onlyInB.push_back(frame);
        } else {
            compared.frames.push_back(compareFrame(arguments, a, b, frame));
        }
    }
    return {compared.same(), arguments.json ? comparedJson(compared) : comparedText(compared)};
}

} // namespace kovalune::cli
