#include "adapters/web/Engine.h"

#include "adapters/web/OpenedPicture.h"
#include "adapters/web/PngBytes.h"
#include "hostapi/Constants.h"
#include "pictures/EmbeddedSettings.h"
#include "pictures/FlatColors.h"
#include "pictures/PictureConversion.h"
#include "render/EffectVersion.h"
#include "render/EnabledControls.h"
#include "render/FrameArea.h"
#include "render/RenderFrame.h"
#include "render/SelectionNotes.h"
#include "render/SettingsLayer.h"
#include "render/Stages.h"
#include "render/samples/SampleScale.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <utility>

namespace kovalune::web {

namespace {

using pictures::FileFormat;
using pictures::Picture;

template <class Scale>
ScreenPixel screenPixel(const typename Scale::Pixel& pixel) {
    const auto byteOf = [](auto channel) {
        return samples::rescaled<Scale, samples::FileScale8>(bitCast<typename Scale::Sample>(channel));
    };
    return {byteOf(pixel.red), byteOf(pixel.green), byteOf(pixel.blue), byteOf(pixel.alpha)};
}

/// What `visit` returns for the scale of the image's samples.
template <class Visit>
decltype(auto) withScale(const host::Image& image, const Visit& visit) {
    if (image.format() == PF_PixelFormat_ARGB32) {
        return visit(samples::HostScale8{});
    }
    return image.format() == PF_PixelFormat_ARGB64 ? visit(samples::HostScale16{})
                                                   : visit(samples::HostScale32{});
}

ScreenPicture screenOf(const host::Image& image) {
    ScreenPicture screen{image.width(), image.height(), {}};
    screen.pixels.resize(sizeof(ScreenPixel) * static_cast<std::size_t>(image.width()) *
                         static_cast<std::size_t>(image.height()));
    withScale(image, [&](auto scale) {
        using Scale = decltype(scale);
        auto next = screen.pixels.begin();
        for (A_long y = 0; y < image.height(); ++y) {
            for (A_long x = 0; x < image.width(); ++x) {
                const ScreenPixel pixel = screenPixel<Scale>(image.at<typename Scale::Pixel>(x, y));
                next = std::copy(pixel.begin(), pixel.end(), next);
            }
        }
    });
    return screen;
}

/// A picture of the pixel there.
host::Image pixelOf(const host::Image& image, A_long x, A_long y) {
    host::Image pixel(image.format(), 1, 1);
    withScale(image, [&](auto scale) {
        using Pixel = typename decltype(scale)::Pixel;
        pixel.at<Pixel>(0, 0) = image.at<Pixel>(x, y);
    });
    return pixel;
}

Picture pixelOf(const Picture& picture, std::size_t x, std::size_t y) {
    Picture pixel;
    pixel.width = 1;
    pixel.height = 1;
    pixel.channels = picture.channels;
    pixel.sampleType = picture.sampleType;
    pixel.alphaKind = picture.alphaKind;
    const auto first =
        picture.samples.begin() + static_cast<std::ptrdiff_t>(y * picture.rowBytes() + x * pixel.rowBytes());
    pixel.samples.assign(first, first + static_cast<std::ptrdiff_t>(pixel.rowBytes()));
    return pixel;
}

ScreenPixel shownPixel(const host::Image& pixel) {
    return withScale(pixel, [&](auto scale) {
        using Scale = decltype(scale);
        return screenPixel<Scale>(pixel.at<typename Scale::Pixel>(0, 0));
    });
}

/// Of each so many-th row every so many-th pixel: colours stay what they are, where a mean would match nothing.
host::Image thinned(const host::Image& image, int reduction) {
    const auto part = [reduction](A_long side) { return (side + reduction - 1) / reduction; };
    host::Image result(image.format(), part(image.width()), part(image.height()));
    withScale(image, [&](auto scale) {
        using Pixel = typename decltype(scale)::Pixel;
        for (A_long y = 0; y < result.height(); ++y) {
            for (A_long x = 0; x < result.width(); ++x) {
                result.at<Pixel>(x, y) = image.at<Pixel>(x * reduction, y * reduction);
            }
        }
    });
    return result;
}

/// "Region" as the picture has it; a mask is another file, which a page does not open.
std::optional<render::FrameArea> areaOf(const render::AreaSettings& settings, const host::Image& image,
                                        int reduction, std::vector<std::string>& notes) {
    if (settings.mask) {
        notes.push_back("the mask " + text::inQuotes(*settings.mask) +
                        " is kept in the settings, and does not count here");
    }
    if (!settings.region) {
        return std::nullopt;
    }
    // The first pixel inside stays the first one inside.
    const auto down = [reduction](int64_t at) {
        return at >= 0 ? (at + reduction - 1) / reduction : at / reduction;
    };
    const render::Region& whole = *settings.region;
    render::Region region{down(whole.x), down(whole.y), 0, 0};
    region.width = std::max<int64_t>(1, down(whole.x + whole.width) - region.x);
    region.height = std::max<int64_t>(1, down(whole.y + whole.height) - region.y);
    render::FrameArea area(image.width(), image.height());
    area.intersect(region);
    return area;
}

/// So that a colour's own selection is all that the view "Base" shows.
void selectAlone(host::ParamValues& values, const host::Session& session, std::size_t stage,
                 std::size_t color) {
    const auto valueOf = [&](const std::string& label) -> host::ParamValue& {
        const std::optional<int> index = session.findParam(label);
        const auto found = std::find_if(values.begin(), values.end(),
                                        [&](const auto& value) { return index && value.first == *index; });
        if (found == values.end()) {
            throw text::Failure(text::FailureKind::kEffect, "the effect has no " + text::inQuotes(label));
        }
        return found->second;
    };
    const std::string label = render::colorLabel(stage, color);
    valueOf(render::colorLabel(0, 0)) = host::ParamValue(valueOf(label));
    valueOf(render::colorLabel(0, 0) + " Range") = host::ParamValue(valueOf(label + " Range"));
    for (std::size_t other = 0; other < kStageColors; ++other) {
        valueOf(render::colorSwitch(0, other)) = A_long{other == 0 ? 1 : 0};
    }
    for (std::size_t other = 1; other < kStageCount; ++other) {
        valueOf(render::stageSwitch(other)) = A_long{0};
    }
    host::ParamValue& amount = valueOf("Blur Amount");
    amount = std::holds_alternative<double>(amount) ? host::ParamValue(0.0) : host::ParamValue(A_long{0});
    const std::vector<std::string> views = session.choices(*session.findParam("View"));
    const auto base = std::find(views.begin(), views.end(), "Base");
    valueOf("View") = static_cast<A_long>(base - views.begin()) + 1;
}

} // namespace

Engine::Engine(int threads, Progress onProgress)
    : threads_(threads), onProgress_(std::move(onProgress)), effect_(threads, render::Defaults::kFactory),
      factory_(render::valuesOf(effect_.session())) {}

void Engine::open(std::span<const uint8_t> bytes, const std::string& name, uint64_t memory) {
    Picture picture = openPicture(bytes, name, memory);
    image_ = pictures::imageOf(picture, pictures::workingFormat(picture.sampleType));
    picture_ = std::move(picture);
    name_ = name;
    result_.reset();
    suggestion_.reset();
    colors_.reset();
}

void Engine::requirePicture() const {
    if (!picture_) {
        throw text::Failure(text::FailureKind::kUsage, "no picture is open");
    }
}

const Picture& Engine::picture() const {
    requirePicture();
    return *picture_;
}

ScreenPicture Engine::screen() const {
    requirePicture();
    return screenOf(image_);
}

render::ShotSettings Engine::settingsOf(const std::string& text) {
    render::setValues(session(), factory_);
    return {session(), {render::parseSettingsText(session(), text, "settings")}};
}

void Engine::setValues(const render::ShotSettings& settings, const Place& place) {
    render::setValues(session(), settings.valuesAt(place.pass, place.frame));
}

std::vector<bool> Engine::enabledControls() {
    return render::enabledControls(session());
}

host::Image Engine::passed(const host::Image& image, const render::ShotSettings& settings, const Place& place,
                           int reduction, FrameReport* counts, std::vector<std::string>& notes) {
    const std::optional<render::FrameArea> area = areaOf(settings.area(place.pass), image, reduction, notes);
    render::FrameRequest request;
    request.name = name_;
    request.downsample = {render::Fraction{1, reduction}, render::Fraction{1, reduction}};
    request.values = settings.valuesAt(place.pass, place.frame);
    request.onProgress = onProgress_;
    request.area = area ? &*area : nullptr;
    request.counts = counts;
    return render::renderFrame(effect_, image, request);
}

Frame Engine::render(const render::ShotSettings& settings, const Place& place, int reduction) {
    requirePicture();
    Frame frame;
    host::Image image = reduction > 1 ? thinned(image_, reduction) : image_;
    const std::size_t passes = std::min(place.pass + 1, settings.passCount());
    for (std::size_t pass = 0; pass < passes; ++pass) {
        PassCounts counts{settings.passName(pass), {}, settings.valuesAt(pass, place.frame)};
        image = passed(image, settings, {pass, place.frame}, reduction, &counts.counts, frame.notes);
        render::setValues(session(), counts.values);
        for (const std::string& note :
             render::selectionNotes(session(), settings.named(pass), counts.counts)) {
            frame.notes.push_back(counts.name.empty() ? note : text::inQuotes(counts.name) + ": " + note);
        }
        frame.passes.push_back(std::move(counts));
    }
    frame.screen = screenOf(image);
    if (reduction == 1) {
        result_ = std::move(image);
    }
    return frame;
}

host::Image Engine::imageBefore(const render::ShotSettings& settings, const Place& place) {
    host::Image image = image_;
    std::vector<std::string> notes; // told with the frame
    for (std::size_t pass = 0; pass < place.pass; ++pass) {
        image = passed(image, settings, {pass, place.frame}, 1, nullptr, notes);
    }
    return image;
}

Selected Engine::select(const render::ShotSettings& settings, const Place& place, std::size_t stage,
                        std::size_t color) {
    requirePicture();
    const host::Image before = imageBefore(settings, place);
    render::FrameRequest request;
    request.name = name_;
    request.values = settings.valuesAt(place.pass, place.frame);
    selectAlone(request.values, session(), stage, color);
    request.onProgress = onProgress_;
    const ScreenPicture shown = screenOf(render::renderFrame(effect_, before, request));
    Selected selected;
    selected.mask.resize(shown.pixels.size() / 4);
    for (std::size_t i = 0; i < selected.mask.size(); ++i) {
        const bool isSelected = shown.pixels[4 * i + 3] != 0;
        selected.mask[i] = isSelected ? 255 : 0;
        selected.pixels += isSelected ? 1 : 0;
    }
    return selected;
}

PickedPixel Engine::pick(std::size_t x, std::size_t y) const {
    const auto across = static_cast<A_long>(x);
    const auto down = static_cast<A_long>(y);
    const host::Image seen = pixelOf(image_, across, down);
    PickedPixel picked;
    picked.source = pixelOf(picture(), x, y);
    picked.shown = shownPixel(seen);
    if (result_) {
        const host::Image result = pixelOf(*result_, across, down);
        picked.result = pictures::pictureOf(
            result, seen, picked.source, {picked.source.sampleType, pictures::AlphaKind::kStraight, false});
        picked.resultShown = shownPixel(result);
    }
    return picked;
}

std::vector<uint8_t> Engine::png(const std::string& settings, int64_t frame) {
    requirePicture();
    const render::ShotSettings shot = settingsOf(settings);
    host::Image result = imageBefore(shot, {shot.passCount(), frame});
    Picture written = pictures::pictureOf(result, image_, *picture_,
                                          {picture_->sampleType, pictures::AlphaKind::kStraight, false});
    if (written.format != FileFormat::kPng) { // what a TGA says of itself no PNG can
        written.notes.clear();
    }
    const std::string text = render::settingsWithVersion(session(), shot.textAt(session(), frame));
    written.notes = pictures::withSettings(FileFormat::kPng, written.notes, text);
    return encodePng(written);
}

const suggest::Suggestion& Engine::suggestion() {
    requirePicture();
    if (!suggestion_) {
        suggest::SuggestionFigures figures;
        figures.add(*picture_, 0);
        suggestion_ = figures.suggestion(name_);
    }
    return *suggestion_;
}

const pictures::FlatColors& Engine::colors() {
    requirePicture();
    if (!colors_) {
        colors_ = pictures::flatColorsOf(*picture_);
    }
    return *colors_;
}

} // namespace kovalune::web
