// What is rendered for the golden hashes, and the line of text that names it.
#pragma once

#include "effect/Kovalune.h"
#include "host/ParamValue.h"
#include "host/Session.h"
#include "render/selfcheck/GoldenPicture.h"

#include <optional>
#include <string>
#include <vector>

namespace kovalune::selfcheck {

/// A control by its label.
struct GoldenSetting {
    std::string label;
    host::ParamValue value;
};

struct GoldenScene {
    enum class What { kFrame, kSmooth, kEdgeFlags };

    What what = What::kFrame;
    PictureKind picture = PictureKind::kCel;
    PF_PixelFormat format = PF_PixelFormat_ARGB32;
    int32_t width = 0;
    int32_t height = 0;
    uint64_t seed = 0; ///< of the picture

    // Of a frame.
    host::RenderFlow flow = host::RenderFlow::kSmart;
    int32_t view = 1;
    PF_RationalScale scaleX{1, 1}; ///< the downsample factors
    PF_RationalScale scaleY{1, 1};
    std::optional<PF_LRect> rect; ///< a part of the picture
    int32_t iterations = 0;       ///< the one number that the hash holds for; 0: any
    std::vector<GoldenSetting> settings;

    /// Of boundary smoothing.
    SmoothOptions smooth;

    /// The denominator of both factors where they are one over the same number, else 0.
    int32_t wholeScale() const {
        const bool isWhole = scaleX.num == 1 && scaleY.num == 1 && scaleX.den == scaleY.den;
        return isWhole ? static_cast<int32_t>(scaleX.den) : 0;
    }

    /// One line without its hash; no two scenes have the same.
    std::string text() const;
};

/// All of them, in the order of the file.
std::vector<GoldenScene> goldenScenes();

/// A frame of anything at any settings, of up to `mostSide` pixels a side; the same for the same seed. It is none of the file.
GoldenScene randomFrame(uint64_t seed, int32_t mostSide);

} // namespace kovalune::selfcheck
