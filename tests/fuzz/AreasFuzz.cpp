// Where passes may work, said in every way there is: the options of the command line, lines of a settings file, a mask's picture
// of any kind and size. Refused with a Failure, or the area is what the same words mean pixel by pixel.

#include "cli/arguments/Arguments.h"
#include "pictures/PictureFile.h"
#include "render/LinkedEffect.h"
#include "render/ShotSettings.h"
#include "render/shots/ShotAreas.h"
#include "tests/fuzz/Require.h"
#include "tests/fuzz/Taken.h"
#include "text/Failure.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <variant>
#include <vector>

namespace kovalune::test {
namespace {

using pictures::Picture;
using pictures::SampleType;
using render::AreaSettings;
using render::FrameArea;

/// One for all inputs; its values are never set.
host::Session& session() {
    static render::OpenEffect effect(1, render::Defaults::kFactory);
    return effect.session();
}

/// A file without a name on any disk.
class OwnFile {
public:
    OwnFile() : descriptor_(memfd_create("mask", MFD_CLOEXEC)) {
        require(descriptor_ >= 0, "a file is made");
    }

    void put(const std::vector<uint8_t>& bytes) const {
        const bool done = ftruncate(descriptor_, 0) == 0 && pwrite(descriptor_, bytes.data(), bytes.size(),
                                                                   0) == static_cast<ssize_t>(bytes.size());
        require(done, "the file is written");
    }
    std::string name() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};

// ---- Masks

struct Kind {
    pictures::FileFormat format;
    SampleType type;
};
constexpr Kind kKinds[] = {{pictures::FileFormat::kPng, SampleType::kUint8},
                           {pictures::FileFormat::kPng, SampleType::kUint16},
                           {pictures::FileFormat::kTga, SampleType::kUint8},
                           {pictures::FileFormat::kTiff, SampleType::kFloat},
                           {pictures::FileFormat::kExr, SampleType::kHalf}};

/// Mostly zeros.
Picture takenMask(Taken& taken, const Kind& kind) {
    constexpr pictures::Channels kChannels[] = {pictures::Channels::kGrey, pictures::Channels::kGreyAlpha,
                                                pictures::Channels::kRgb, pictures::Channels::kRgbAlpha};
    Picture picture;
    picture.format = kind.format;
    picture.sampleType = kind.type;
    picture.channels = taken.oneOf(kChannels);
    picture.alphaKind = pictures::usualAlphaKind(kind.format);
    picture.width = 1U + static_cast<uint32_t>(taken.below(9));
    picture.height = 1U + static_cast<uint32_t>(taken.below(9));
    picture.samples.resize(picture.byteCount());
    for (uint8_t& byte : picture.samples) {
        const uint8_t next = taken.byte();
        byte = next < 128 ? uint8_t{0} : next;
    }
    return picture;
}

/// From what was read: files round and spread.
bool isInside(const Picture& picture, std::size_t pixel, std::optional<render::MaskBy> by) {
    const std::size_t channels = pictures::channelCount(picture.channels);
    const bool hasAlpha = pictures::hasAlpha(picture.channels);
    const bool byAlpha = by ? *by == render::MaskBy::kAlpha : hasAlpha;
    if (byAlpha && !hasAlpha) {
        return true;
    }
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const bool isAlpha = hasAlpha && channel + 1 == channels;
        if (isAlpha != byAlpha) {
            continue;
        }
        const std::size_t at = pixel * channels + channel;
        const bool isFloat = picture.sampleType == SampleType::kFloat;
        const bool isByte = picture.sampleType == SampleType::kUint8;
        const bool isHalf = picture.sampleType == SampleType::kHalf;
        const bool isZero = isFloat  ? picture.sample<float>(at) == 0.0F
                            : isByte ? picture.sample<uint8_t>(at) == 0
                                     : (picture.sample<uint16_t>(at) & (isHalf ? 0x7fff : 0xffff)) == 0;
        if (!isZero) {
            return true;
        }
    }
    return false;
}

void readMask(Taken& taken) {
    static const OwnFile file;
    const Kind& kind = taken.oneOf(kKinds);
    constexpr std::optional<render::MaskBy> kBy[] = {std::nullopt, render::MaskBy::kAlpha,
                                                     render::MaskBy::kGrey};
    const std::optional<render::MaskBy> by = taken.oneOf(kBy);
    const bool invert = taken.bit();
    file.put(pictures::encodePicture(kind.format, takenMask(taken, kind)));
    const Picture mask = pictures::readPicture(file.name());
    const FrameArea area = shots::maskArea(file.name(), by, invert);
    std::size_t pixel = 0;
    for (int32_t y = 0; y < area.height(); ++y) {
        for (int32_t x = 0; x < area.width(); ++x, ++pixel) {
            require(area.isInside(x, y) == (isInside(mask, pixel, by) != invert),
                    "a mask's pixel counts as it should");
        }
    }
}

// ---- Words

bool isIn(const render::Region& region, int64_t x, int64_t y) {
    return x >= region.x && x - region.x < region.width && y >= region.y && y - region.y < region.height;
}

/// Of passes that name no mask's file.
void checkAreas(const render::ShotSettings& settings, const AreaSettings& command, int32_t width,
                int32_t height) {
    const shots::ShotAreas areas(settings, command);
    shots::PlannedFrame frame;
    frame.input = "frame";
    for (std::size_t pass = 0; pass < settings.passCount(); ++pass) {
        if (settings.area(pass).mask || command.mask) {
            continue;
        }
        std::vector<std::string> notes;
        const auto area = areas.areaOf(pass, frame, width, height, notes);
        for (int32_t y = 0; y < height; ++y) {
            for (int32_t x = 0; x < width; ++x) {
                const bool inOwn = !settings.area(pass).region || isIn(*settings.area(pass).region, x, y);
                const bool inCommands = !command.region || isIn(*command.region, x, y);
                require((area == nullptr || area->isInside(x, y)) == (inOwn && inCommands),
                        "an area is what its regions have in common");
            }
        }
    }
}

/// Words after "render IN -o OUT", one a line; then a settings file.
void readOptions(Taken& taken) {
    const int32_t width = 1 + taken.below(30);
    const int32_t height = 1 + taken.below(30);
    std::vector<std::string> words = {"kovalune", "render", "in.png", "-o", "out.png"};
    const std::string lines = taken.text();
    for (std::size_t start = 0; start < lines.size();) {
        const std::size_t end = std::min(lines.find('\n', start), lines.size());
        words.push_back(lines.substr(start, end - start));
        start = end + 1;
    }
    std::vector<const char*> line;
    for (const std::string& word : words) {
        line.push_back(word.c_str());
    }
    const cli::Arguments arguments = cli::parseArguments(static_cast<int>(line.size()), line.data());
    const auto* const render = std::get_if<cli::RenderArguments>(&arguments);
    if (render == nullptr) {
        return; // help
    }
    require(!render->area.maskBy || render->area.mask, "what of a mask counts is said of a mask");
    require(!render->area.invert || render->area.mask, "a mask that is inverted is there");
    const std::vector<render::SettingsLayer> layers = {
        render::parseSettingsText(session(), taken.restAsText(), "fuzz")};
    const render::ShotSettings settings(session(), layers);
    checkAreas(settings, render->area, width, height);
    const std::string text = settings.text(session());
    const render::ShotSettings again(session(), {render::parseSettingsText(session(), text, "again")});
    require(again.text(session()) == text, "areas are read as they were written:", text);
}

} // namespace
} // namespace kovalune::test

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    kovalune::test::Taken taken(data, size);
    try {
        if (taken.bit()) {
            kovalune::test::readMask(taken);
        } else {
            kovalune::test::readOptions(taken);
        }
    } catch (const kovalune::text::Failure&) {
    }
    return 0;
}
