#include "cli/Commands.h"
#include "cli/commands/EffectSettings.h"

#include "cli/commands/RenderPicture.h"
#include "cli/commands/RunFrames.h"
#include "effect/Kovalune.h"
#include "pictures/Canvas.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "render/ParamText.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/DrawnFile.h"
#include "render/shots/OutputFile.h"
#include "render/shots/SequenceInput.h"
#include "render/shots/SequencePlan.h"
#include "render/shots/ShotRun.h"
#include "text/Failure.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>

namespace kovalune::cli {

namespace {

/// The colour as --set takes one.
PF_Pixel keyColorOf(const std::string& text) {
    PF_ParamDef def{};
    def.param_type = PF_Param_COLOR;
    constexpr char kName[] = "--key-color";
    std::copy(std::begin(kName), std::end(kName), def.name);
    return std::get<PF_Pixel>(render::parseValue(def, {}, text));
}

SmoothOptions optionsOf(const SmoothArguments& arguments) {
    SmoothOptions options = arguments.options;
    if (arguments.keyColor) {
        const PF_Pixel color = keyColorOf(*arguments.keyColor);
        options.keyRed = color.red;
        options.keyGreen = color.green;
        options.keyBlue = color.blue;
    }
    return options;
}

/// At tolerance 0 the pass tests 8-bit pixels with red and blue exchanged in one place and not in another, so no
/// colour that it could be given would be the one that the user means.
void checkKey(PF_PixelFormat format, const SmoothOptions& options) {
    if (format == PF_PixelFormat_ARGB32 && options.key != SmoothKey::kNone && options.keyTolerance == 0 &&
        options.keyRed != options.keyBlue) {
        throw text::Failure(text::FailureKind::kUsage,
                            "in 8 bits a --key-color whose red and blue differ needs a "
                            "--key-tolerance of 1 to 255, or --depth 16");
    }
}

template <class View, class Image>
View viewOf(Image& image) {
    return {image.format(), image.width(), image.height(), static_cast<int32_t>(image.rowBytes()),
            image.row(0)};
}

void requireNoError(PF_Err err) {
    if (err == PF_Err_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    if (err != PF_Err_NONE) {
        throw text::Failure(text::FailureKind::kEffect,
                            "the smoothing failed with code " + std::to_string(err));
    }
}

struct FlagColor {
    uint8_t flag;
    pictures::DrawnColor color;
};

/// Sums stay within white: no pixel has more of a channel than three of the four give.
constexpr std::array<FlagColor, 4> kFlagColors = {{{kEdgeRight, {255, 0, 0}},
                                                   {kEdgeDown, {0, 255, 0}},
                                                   {kEdgeFalling, {0, 0, 127}},
                                                   {kEdgeRising, {0, 0, 128}}}};

/// Red for a step to the right, green for one downward, blue for the diagonals.
pictures::DrawnColor colorOf(uint8_t flags) {
    pictures::DrawnColor sum;
    for (const auto& [flag, color] : kFlagColors) {
        if ((flags & flag) == 0) {
            continue;
        }
        sum.red = static_cast<uint8_t>(sum.red + color.red);
        sum.green = static_cast<uint8_t>(sum.green + color.green);
        sum.blue = static_cast<uint8_t>(sum.blue + color.blue);
    }
    return sum;
}

pictures::Picture flagPicture(const host::Image& image, const SmoothOptions& options) {
    const auto width = static_cast<uint32_t>(image.width());
    const auto height = static_cast<uint32_t>(image.height());
    std::vector<uint8_t> flags(std::size_t{width} * height);
    requireNoError(edgeFlags(viewOf<PictureView>(image), options, flags));
    pictures::Canvas canvas(width, height, {});
    for (std::size_t at = 0; at < flags.size(); ++at) {
        if (flags[at] != 0) {
            canvas.fill({static_cast<int64_t>(at % width), static_cast<int64_t>(at / width), 1, 1},
                        colorOf(flags[at]));
        }
    }
    return std::move(canvas).picture();
}

host::Image smoothed(const host::Image& image, const SmoothOptions& options) {
    checkKey(image.format(), options);
    host::Image result(image.format(), image.width(), image.height());
    requireNoError(smoothPicture(viewOf<PictureView>(image), viewOf<WritablePictureView>(result), options));
    return result;
}

void smoothFile(const SmoothArguments& arguments, const shots::PlannedFrame& names,
                const SmoothOptions& options) {
    const pictures::FileFormat format = shots::outputFormat(names.output, arguments.form);
    const shots::SourceFrame source = shots::readFrame(names.input, arguments.form);
    const host::Image result = smoothed(source.image, options);
    const pictures::PictureForm form = shots::outputForm(source.picture, format, arguments.form);
    const std::vector<uint8_t> bytes = pictures::encodePicture(
        format, pictures::pictureOf(result, source.image, source.picture, form), arguments.form.encoding);
    std::vector<shots::FileContent> files = {{names.output, bytes}};
    std::vector<uint8_t> mapBytes;
    if (arguments.flagMap) {
        mapBytes = shots::encodeDrawn(*arguments.flagMap, flagPicture(source.image, options),
                                      {.pngLevel = arguments.form.encoding.pngLevel});
        files.push_back({*arguments.flagMap, mapBytes});
    }
    shots::writeOutputs(files);
    noteLeftOut(source, format);
}

/// A picture takes one thread here, so all that there are make pictures.
void smoothShot(const SmoothArguments& arguments, const shots::SequencePlan& plan,
                const SmoothOptions& options) {
    tellGaps(plan, arguments.quiet);
    const FrameDivision division = divisionOf(plan, arguments.sequence, arguments.form, 1);
    shots::PictureRequest request;
    request.form = arguments.form;
    request.existing = arguments.sequence.options.existing;
    const shots::PictureMaker make = [&options](const shots::PlannedFrame&, const shots::SourceFrame& source,
                                                shots::FrameRecord&) {
        return smoothed(source.image, options);
    };
    const shots::ShotSummary summary =
        runFrames(plan, division.jobs, arguments.sequence.options.keepGoing, arguments.quiet,
                  [&](const shots::RunOptions& runOptions, const shots::FrameListener& ended) {
                      shots::runPictures(plan, request, runOptions, make, ended);
                  });
    tellNotices(summary);
    endByWorst(summary, false, arguments.quiet);
}

void checkFlagMap(const SmoothArguments& arguments, const shots::SequencePlan& plan) {
    if (!arguments.flagMap) {
        return;
    }
    if (!plan.isOnePicture) {
        throw text::Failure(text::FailureKind::kUsage, "--flag-map: is drawn of one picture, not of a shot");
    }
    const shots::PlannedFrame& names = plan.frames.front();
    shots::checkDrawnFile(*arguments.flagMap, {names.input, names.output}, arguments.sequence.options.force);
}

} // namespace

void runSmooth(const SmoothArguments& arguments) {
    chooseInstructionSet(arguments.cpu);
    const SequenceArguments& sequence = arguments.sequence;
    const shots::SequencePlan plan =
        shots::planSequence(shots::sequenceInput(sequence.inputs), sequence.output, sequence.options);
    const SmoothOptions options = optionsOf(arguments);
    if (isEmptyPart(plan, sequence, arguments.quiet)) {
        return;
    }
    if (sequence.options.dryRun) {
        tellPlan(plan, sequence, arguments.form, arguments.quiet);
        return;
    }
    shots::checkOutputs(plan, sequence.options, arguments.form);
    checkFlagMap(arguments, plan);
    if (sequence.options.makeFolders) {
        shots::makeFolders(plan);
    }
    if (plan.isOnePicture && sequence.options.existing == shots::ExistingOutputs::kReplace &&
        !sequence.options.part) {
        const shots::PlannedFrame& names = plan.frames.front();
        pictures::withMemoryFor(names.input, [&] { smoothFile(arguments, names, options); });
    } else {
        smoothShot(arguments, plan, options);
    }
}

} // namespace kovalune::cli
