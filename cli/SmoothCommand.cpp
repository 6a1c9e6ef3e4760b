#include "cli/SmoothCommand.h"

#include "cli/AtomicFile.h"
#include "cli/DrawnFile.h"
#include "cli/Failure.h"
#include "cli/FrameRender.h"
#include "cli/ParamText.h"
#include "cli/PictureMemory.h"
#include "cli/picture/Canvas.h"
#include "cli/picture/PictureFile.h"
#include "effect/Kovalune.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>

namespace kovalune {

namespace {

/// The colour as --set takes one.
PF_Pixel keyColorOf(const std::string& text) {
    PF_ParamDef def{};
    def.param_type = PF_Param_COLOR;
    constexpr char kName[] = "--key-color";
    std::copy(std::begin(kName), std::end(kName), def.name);
    return std::get<PF_Pixel>(parseValue(def, {}, text));
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
        throw Failure(ExitCode::kUsage, "in 8 bits a --key-color whose red and blue differ needs a "
                                        "--key-tolerance of 1 to 255, or --depth 16");
    }
}

template <class View, class Image>
View viewOf(Image& image) {
    return {image.format(), image.width(), image.height(), static_cast<int32_t>(image.rowBytes()),
            image.row(0)};
}

void requireSuccess(PF_Err err) {
    if (err == PF_Err_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    if (err != PF_Err_NONE) {
        throw Failure(ExitCode::kEffect, "the smoothing failed with code " + std::to_string(err));
    }
}

struct FlagColor {
    uint8_t flag;
    DrawnColor color;
};

/// Sums stay within white: no pixel has more of a channel than three of the four give.
constexpr std::array<FlagColor, 4> kFlagColors = {{{kEdgeRight, {255, 0, 0}},
                                                   {kEdgeDown, {0, 255, 0}},
                                                   {kEdgeFalling, {0, 0, 127}},
                                                   {kEdgeRising, {0, 0, 128}}}};

/// Red for a step to the right, green for one downward, blue for the diagonals.
DrawnColor colorOf(uint8_t flags) {
    DrawnColor sum;
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

Picture flagPicture(const host::Image& image, const SmoothOptions& options) {
    const auto width = static_cast<uint32_t>(image.width());
    const auto height = static_cast<uint32_t>(image.height());
    std::vector<uint8_t> flags(std::size_t{width} * height);
    requireSuccess(edgeFlags(viewOf<PictureView>(image), options, flags));
    Canvas canvas(width, height, {});
    for (std::size_t at = 0; at < flags.size(); ++at) {
        if (flags[at] != 0) {
            canvas.fill({static_cast<int64_t>(at % width), static_cast<int64_t>(at / width), 1, 1},
                        colorOf(flags[at]));
        }
    }
    return std::move(canvas).picture();
}

void smoothFile(const SmoothArguments& arguments, const SmoothOptions& options, FileFormat format) {
    const SourceFrame source = readFrame(arguments.input, arguments.frame);
    checkKey(source.image.format(), options);
    host::Image result(source.image.format(), source.image.width(), source.image.height());
    requireSuccess(
        smoothPicture(viewOf<PictureView>(source.image), viewOf<WritablePictureView>(result), options));
    const PictureForm form = outputForm(source.picture, format, arguments.frame);
    const std::vector<uint8_t> bytes =
        encodePicture(format, pictureOf(result, source.image, source.picture, form));
    std::vector<FileContent> files = {{arguments.output, bytes}};
    std::vector<uint8_t> mapBytes;
    if (arguments.flagMap) {
        mapBytes = encodeDrawn(*arguments.flagMap, flagPicture(source.image, options));
        files.push_back({*arguments.flagMap, mapBytes});
    }
    writeAtomically(files);
    noteLeftOut(source, format);
}

} // namespace

void runSmooth(const SmoothArguments& arguments) {
    const FileFormat format = checkedOutputFormat(arguments.output, arguments.force);
    if (arguments.flagMap) {
        checkDrawnFile(*arguments.flagMap, {arguments.input, arguments.output}, arguments.force);
    }
    const SmoothOptions options = optionsOf(arguments);
    withMemoryFor(arguments.input, [&] { smoothFile(arguments, options, format); });
}

} // namespace kovalune
