#include "tests/reference/PlainFrame.h"

#include "tests/reference/PlainBlur.h"
#include "tests/reference/PlainExtraction.h"

namespace kovalune::test {
namespace {

template <class Channel>
PlainPicture inFormat(const PlainPicture& picture, PF_PixelFormat format, const Channel& channel) {
    PlainPicture result(format, picture.width, picture.height);
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        const PlainPixel& p = picture.pixels[i];
        result.pixels[i] = {channel(p.alpha), channel(p.red), channel(p.green), channel(p.blue)};
    }
    return result;
}

double stageAmount(const PlainFrame& frame) {
    const double scaled = frame.settings.stages[0].blurAmount * frame.scale + 0.5;
    return static_cast<double>(static_cast<int32_t>(scaled)) + 1.0;
}

} // namespace

PlainPicture plainWiden(const PlainPicture& picture) {
    return inFormat(picture, PF_PixelFormat_ARGB64, [](double c) {
        const int64_t wide = (static_cast<int64_t>(c) * 32768 + 128) / 255;
        return static_cast<double>(wide);
    });
}

PlainPicture plainNarrow(const PlainPicture& picture) {
    return inFormat(picture, PF_PixelFormat_ARGB32, [](double c) {
        return static_cast<double>(static_cast<uint8_t>((static_cast<int64_t>(c) * 255 + 16384) >> 15));
    });
}

Mask plainRegion(const PlainFrame& frame, const PlainPicture& input) {
    std::vector<PlainMatch> list;
    for (const ColorEntry& entry : frame.settings.stages[0].colors) {
        if (entry.enable != 0) {
            list.push_back({entry.color, entry.range / 100.0});
        }
    }
    return plainExtract(input, frame.settings.extentRect, list, frame.iterations).mask;
}

PlainPicture plainOutput(const PlainFrame& frame, const PlainPicture& input) {
    const RenderSettings& settings = frame.settings;
    const bool widened = input.format == PF_PixelFormat_ARGB32;
    const PlainPicture source = widened ? plainWiden(input) : input;
    PlainPicture target = source;
    PlainPicture scratch = source;
    const PlainBlur blur = {settings.stages[0].keepDivision != 0,
                            settings.extentRect,
                            plainRegion(frame, input),
                            settings.stages[0].repeat,
                            stageAmount(frame),
                            frame.blurPasses};
    plainBlur(blur, source, target, scratch);
    PlainPicture output = input;
    if (!widened) {
        output = target;
    } else if (frame.narrowed) {
        output = plainNarrow(target);
    }
    if (frame.cut && (settings.view == kViewBase || settings.view == kViewExtract)) {
        for (int32_t y = 0; y < blur.mask.height; ++y) {
            for (int32_t x = 0; x < blur.mask.width; ++x) {
                if (blur.mask.at(x, y) == 0) {
                    output.at(settings.extentRect.left + x, settings.extentRect.top + y).alpha = 0.0;
                }
            }
        }
    }
    return output;
}

} // namespace kovalune::test
