// Where the passes of a shot may work, frame by frame.
#pragma once

#include "pictures/DecodeOptions.h"
#include "render/AreaSettings.h"
#include "render/FrameArea.h"
#include "render/ShotSettings.h"
#include "render/shots/SequencePlan.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace kovalune::shots {

/// What is inside of a mask's picture: everything but 0. `by`: otherwise alpha where the picture has it, else grey, of which
/// any channel counts. Throws Failure if the picture cannot be read.
render::FrameArea maskArea(const std::string& file, std::optional<render::MaskBy> by, bool invert,
                           const pictures::DecodeOptions& decoding = {});

/// Of each pass what its own settings and `command`, those of the command line for all passes, have in common. `mostPixels`: of a mask,
/// as pictures::DecodeOptions have it.
class ShotAreas {
public:
    ShotAreas(const render::ShotSettings& settings, const render::AreaSettings& command,
              int mostPixels = pictures::kUsualMostPixels);

    /// Whether any pass is bounded.
    bool any() const;

    /// The masks that a frame takes, each once.
    std::vector<std::string> masksOf(const PlannedFrame& frame) const;

    /// Throws Failure where a mask of a frame is not there, or is a pattern and the frame has no number.
    void check(const SequencePlan& plan) const;

    /// Null: the pass may work everywhere. What is told of it comes to `notes`. Throws Failure where a mask cannot be read or has
    /// another size. May be called by several threads at once.
    std::shared_ptr<const render::FrameArea> areaOf(std::size_t pass, const PlannedFrame& frame,
                                                    int32_t width, int32_t height,
                                                    std::vector<std::string>& notes) const;

private:
    using Area = std::shared_ptr<const render::FrameArea>;

    Area mask(const std::string& file, const render::AreaSettings& area) const;

    pictures::DecodeOptions decoding_;
    std::vector<std::vector<render::AreaSettings>> passes_; ///< of each pass those that say anything
    mutable std::mutex mutex_;
    mutable std::unordered_map<std::string, Area> kept_; ///< of pictures that all frames share
};

} // namespace kovalune::shots
