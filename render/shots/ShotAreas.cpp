#include "render/shots/ShotAreas.h"

#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "render/shots/FramePattern.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace kovalune::shots {

namespace fs = std::filesystem;

namespace {

/// Whether bytes are those of another number than 0; -0 is 0, NaN is not.
class IsInside {
public:
    explicit IsInside(const pictures::Picture& picture, std::optional<render::MaskBy> by)
        : picture_(picture), channels_(pictures::channelCount(picture.channels)) {
        const bool hasAlpha = pictures::hasAlpha(picture.channels);
        const bool byAlpha =
            by.value_or(hasAlpha ? render::MaskBy::kAlpha : render::MaskBy::kGrey) == render::MaskBy::kAlpha;
        everywhere_ = byAlpha && !hasAlpha; // missing alpha is full
        first_ = byAlpha ? channels_ - 1 : 0;
        last_ = byAlpha || !hasAlpha ? channels_ : channels_ - 1;
    }

    bool operator()(std::size_t pixel) const {
        bool inside = everywhere_;
        for (std::size_t channel = first_; channel < last_ && !inside; ++channel) {
            inside = isSet(pixel * channels_ + channel);
        }
        return inside;
    }

private:
    bool isSet(std::size_t sample) const {
        constexpr uint16_t kHalfWithoutSign = 0x7FFF;
        switch (picture_.sampleType) {
        case pictures::SampleType::kUint8:
            return picture_.sample<uint8_t>(sample) != 0;
        case pictures::SampleType::kUint16:
            return picture_.sample<uint16_t>(sample) != 0;
        case pictures::SampleType::kHalf:
            return (picture_.sample<uint16_t>(sample) & kHalfWithoutSign) != 0;
        default:
            return !(picture_.sample<float>(sample) == 0.0F);
        }
    }

    const pictures::Picture& picture_;
    std::size_t channels_;
    std::size_t first_;
    std::size_t last_;
    bool everywhere_;
};

bool saysAnything(const render::AreaSettings& area) {
    return area.mask || area.region;
}

std::string sizeText(int32_t width, int32_t height) {
    return std::to_string(width) + 'x' + std::to_string(height);
}

std::string fileOf(const render::AreaSettings& area, const PlannedFrame& frame) {
    std::error_code error;
    if (!fs::exists(*area.mask, error)) {
        if (const std::optional<FramePattern> pattern = FramePattern::of(*area.mask)) {
            return frame.number ? pattern->nameOf(*frame.number) : *area.mask;
        }
    }
    return *area.mask;
}

} // namespace

render::FrameArea maskArea(const std::string& file, std::optional<render::MaskBy> by, bool invert,
                           const pictures::DecodeOptions& decoding) {
    return pictures::withMemoryFor(file, [&] {
        const pictures::Picture picture = pictures::readPicture(file, decoding);
        render::FrameArea area(static_cast<int32_t>(picture.width), static_cast<int32_t>(picture.height));
        const IsInside isInside(picture, by);
        std::size_t pixel = 0;
        for (int32_t y = 0; y < area.height(); ++y) {
            uint8_t* const row = area.row(y);
            for (int32_t x = 0; x < area.width(); ++x, ++pixel) {
                row[x] = isInside(pixel) != invert ? uint8_t{1} : uint8_t{0};
            }
        }
        return area;
    });
}

ShotAreas::ShotAreas(const render::ShotSettings& settings, const render::AreaSettings& command,
                     int mostPixels) {
    decoding_.mostPixels = mostPixels;
    for (std::size_t pass = 0; pass < settings.passCount(); ++pass) {
        std::vector<render::AreaSettings>& areas = passes_.emplace_back();
        for (const render::AreaSettings& area : {settings.area(pass), command}) {
            if (saysAnything(area)) {
                areas.push_back(area);
            }
        }
    }
}

bool ShotAreas::any() const {
    return std::any_of(passes_.begin(), passes_.end(), [](const auto& areas) { return !areas.empty(); });
}

std::vector<std::string> ShotAreas::masksOf(const PlannedFrame& frame) const {
    std::vector<std::string> masks;
    for (const auto& areas : passes_) {
        for (const render::AreaSettings& area : areas) {
            const std::string file = area.mask ? fileOf(area, frame) : std::string();
            if (!file.empty() && std::find(masks.begin(), masks.end(), file) == masks.end()) {
                masks.push_back(file);
            }
        }
    }
    return masks;
}

void ShotAreas::check(const SequencePlan& plan) const {
    for (const PlannedFrame& frame : plan.frames) {
        for (const std::string& mask : masksOf(frame)) {
            std::error_code error;
            if (fs::exists(mask, error)) {
                continue;
            }
            if (!frame.number && FramePattern::of(mask)) {
                throw text::Failure(text::FailureKind::kUsage,
                                    "the mask " + text::inQuotes(mask) +
                                        " has a place for a number, and the INPUT has no number");
            }
            throw text::Failure(text::FailureKind::kFile,
                                "cannot read the mask " + text::inQuotes(mask) + ": there is no such file");
        }
    }
}

ShotAreas::Area ShotAreas::mask(const std::string& file, const render::AreaSettings& area) const {
    const auto read = [&] {
        return std::make_shared<const render::FrameArea>(
            maskArea(file, area.maskBy, area.invert.value_or(false), decoding_));
    };
    if (file != *area.mask) {
        return read(); // of this frame alone
    }
    const std::string key = file + '\n' +
                            (area.maskBy ? *area.maskBy == render::MaskBy::kAlpha ? "a" : "g" : "") +
                            (area.invert.value_or(false) ? "i" : "");
    const std::scoped_lock lock(mutex_);
    Area& kept = kept_[key];
    if (!kept) {
        kept = read();
    }
    return kept;
}

std::shared_ptr<const render::FrameArea> ShotAreas::areaOf(std::size_t pass, const PlannedFrame& frame,
                                                           int32_t width, int32_t height,
                                                           std::vector<std::string>& notes) const {
    if (passes_[pass].empty()) {
        return nullptr;
    }
    auto result = std::make_shared<render::FrameArea>(width, height);
    for (const render::AreaSettings& area : passes_[pass]) {
        if (area.mask) {
            const std::string file = fileOf(area, frame);
            const Area mask = this->mask(file, area);
            if (mask->width() != width || mask->height() != height) {
                throw text::Failure(text::FailureKind::kFile,
                                    "the mask " + text::inQuotes(file) + " has " +
                                        sizeText(mask->width(), mask->height()) + " pixels, and " +
                                        text::inQuotes(frame.input) + " has " + sizeText(width, height));
            }
            if (mask->isEmpty() || mask->isWhole()) {
                notes.push_back("the mask " + text::inQuotes(file) +
                                (mask->isEmpty() ? " is empty everywhere" : " is full everywhere"));
            }
            result->intersect(*mask);
        }
        if (area.region) {
            render::FrameArea region(width, height);
            region.intersect(*area.region);
            if (region.isEmpty()) {
                throw text::Failure(
                    text::FailureKind::kUsage,
                    "the region " + std::to_string(area.region->x) + ',' + std::to_string(area.region->y) +
                        ',' + std::to_string(area.region->width) + ',' + std::to_string(area.region->height) +
                        " has no pixel of " + text::inQuotes(frame.input) + ", which has " +
                        sizeText(width, height));
            }
            result->intersect(region);
        }
    }
    return result;
}

} // namespace kovalune::shots
