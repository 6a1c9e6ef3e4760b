// Any text at all where a user's text is read: files of settings, --set, frame lists, frame patterns, regions and lines of masks.
// It is taken or refused with a Failure; what was taken and is written again reads as the same. The first byte says what the
// rest is.

#include "render/LinkedEffect.h"
#include "render/OpenEffect.h"
#include "render/SettingsLayer.h"
#include "render/ShotSettings.h"
#include "render/shots/FrameList.h"
#include "render/shots/FramePattern.h"
#include "tests/fuzz/Require.h"
#include "text/Failure.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kovalune::test {
namespace {

/// One for all inputs; its values are never set.
host::Session& session() {
    static render::OpenEffect effect(1, render::Defaults::kFactory);
    return effect.session();
}

std::string textOf(const std::vector<render::SettingsLayer>& layers) {
    return render::ShotSettings(session(), layers).text(session());
}

void readSettings(const std::string& text) {
    const std::string once = textOf({render::parseSettingsText(session(), text, "fuzz")});
    require(textOf({render::parseSettingsText(session(), once, "again")}) == once,
            "settings are read as they were written:", once);
}

/// An option a line.
void readOptions(const std::string& text) {
    std::vector<std::string> options;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        options.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    static_cast<void>(render::parseSettingOptions(session(), options));
}

void readFrames(const std::string& text) {
    const std::vector<int64_t> frames = shots::parseFrames(text);
    require(!frames.empty() && frames.size() <= shots::kMostFrames, "a list has frames");
    require(shots::parseFrames(shots::framesText(frames, 4)) == frames,
            "frames are read as they were written");
}

/// A pattern, and after a line's end the name of a file.
void readPattern(const std::string& text) {
    const std::size_t end = text.find('\n');
    const std::optional<shots::FramePattern> pattern = shots::FramePattern::of(text.substr(0, end));
    if (!pattern) {
        return;
    }
    for (const int64_t frame : std::array<int64_t, 5>{0, 1, -5, 99999, -1000000000}) {
        const std::string name = pattern->nameOf(frame);
        require(pattern->frameOf(name.substr(name.rfind('/') + 1)) == frame,
                "a frame's name is its own:", name);
    }
    if (end != std::string::npos) {
        const std::string file = text.substr(end + 1);
        if (const std::optional<int64_t> frame = pattern->frameOf(file)) {
            const std::string name = pattern->nameOf(*frame);
            require(name.substr(name.rfind('/') + 1) == file, "only names that it writes are its own:", file);
        }
    }
}

/// "LABEL=VALUE" of a pass, then as the command's own region.
void readArea(const std::string& text) {
    const std::size_t equals = std::min(text.find('='), text.size());
    const std::string value = text.substr(std::min(equals + 1, text.size()));
    render::AreaSettings area;
    if (render::takeAreaLine(area, text.substr(0, equals), value, "folder")) {
        static_cast<void>(render::areaText(area));
    }
    const render::Region region = render::parseRegion(value, "--region");
    require(region.width > 0 && region.height > 0, "a region has pixels");
}

constexpr std::array kReaders = {readSettings, readOptions, readFrames, readPattern, readArea};

} // namespace
} // namespace kovalune::test

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size > 0) {
        const std::string text(data + 1, data + size);
        try {
            kovalune::test::kReaders[data[0] % kovalune::test::kReaders.size()](text);
        } catch (const kovalune::text::Failure&) {
        }
    }
    return 0;
}
