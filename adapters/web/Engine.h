// The effect for a page: a picture, settings as their file has them, and frames for the screen. One caller at a time.
#pragma once

#include "effect/Kovalune.h"
#include "host/Image.h"
#include "host/ParamValue.h"
#include "pictures/Picture.h"
#include "render/OpenEffect.h"
#include "render/ShotSettings.h"
#include "render/suggest/Suggestion.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kovalune::web {

/// Red, green, blue, alpha, straight, 8 bits a channel: what a screen is sent.
using ScreenPixel = std::array<uint8_t, 4>;

/// Of such pixels, row by row.
struct ScreenPicture {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<uint8_t> pixels;
};

/// Pictures of one pixel, in the samples of the file that was opened.
struct PickedPixel {
    pictures::Picture source;
    ScreenPixel shown{};
    std::optional<pictures::Picture> result; ///< none before the first frame
    ScreenPixel resultShown{};
};

struct Selected {
    std::size_t pixels = 0;
    std::vector<uint8_t> mask; ///< a byte a pixel, 255 or 0
};

/// Where on the road of a shot: the passes before `pass`, and their keys at `frame`.
struct Place {
    std::size_t pass = 0;
    int64_t frame = 0;
};

struct PassCounts {
    std::string name;
    FrameReport counts;
    host::ParamValues values;
};

struct Frame {
    ScreenPicture screen;
    std::vector<PassCounts> passes;
    std::vector<std::string> notes;
};

class Engine {
public:
    /// How far a frame is; false gives it up. Called on several threads at once.
    using Progress = std::function<bool(int current, int total)>;

    /// Throws Failure if the effect's set-up fails.
    Engine(int threads, Progress onProgress);

    host::Session& session() { return effect_.session(); }
    int threads() const { return threads_; }

    /// The one before is kept where this throws Failure. `memory`: bytes that frames may take.
    void open(std::span<const uint8_t> bytes, const std::string& name, uint64_t memory);

    // All that follows but settingsOf throws Failure where no picture is open.

    const pictures::Picture& picture() const;
    const std::string& pictureName() const { return name_; }
    ScreenPicture screen() const;

    /// Over the factory's values. Throws Failure with the line's number for what is no settings file.
    render::ShotSettings settingsOf(const std::string& text);

    /// Brings the values of a pass into the session.
    void setValues(const render::ShotSettings& settings, const Place& place);

    /// By the index of the parameter, for the session's values: whether its control has an effect.
    std::vector<bool> enabledControls();

    /// Through all passes up to the place's. `reduction` 2 or 4 leaves out all but each second or fourth pixel of each second or
    /// fourth row. Throws Failure if the frame fails or is given up.
    Frame render(const render::ShotSettings& settings, const Place& place, int reduction);

    /// What a colour of a stage selects, whether it is switched on or not.
    Selected select(const render::ShotSettings& settings, const Place& place, std::size_t stage,
                    std::size_t color);

    /// Of the picture and of the last frame that was rendered in the whole size. Inside the picture.
    PickedPixel pick(std::size_t x, std::size_t y) const;

    /// A PNG of all passes with the picture's own depth, what the effect left as it was with the file's very samples, and the
    /// settings in its notes.
    std::vector<uint8_t> png(const std::string& settings, int64_t frame);

    /// Made once a picture.
    const suggest::Suggestion& suggestion();
    const pictures::FlatColors& colors();

private:
    host::Image imageBefore(const render::ShotSettings& settings, const Place& place);
    host::Image passed(const host::Image& image, const render::ShotSettings& settings, const Place& place,
                       int reduction, FrameReport* counts, std::vector<std::string>& notes);
    void requirePicture() const;

    int threads_;
    Progress onProgress_;
    render::OpenEffect effect_;
    host::ParamValues factory_;
    std::string name_;
    std::optional<pictures::Picture> picture_;
    host::Image image_; ///< the picture as the host has it
    std::optional<host::Image> result_;
    std::optional<suggest::Suggestion> suggestion_;
    std::optional<pictures::FlatColors> colors_;
};

} // namespace kovalune::web
