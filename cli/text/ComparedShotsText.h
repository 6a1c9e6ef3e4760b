// Two compared shots as `kovalune compare` tells of them: as lines, or as JSON for programs.
#pragma once

#include "pictures/PictureDifference.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::cli {

/// A frame that both have.
struct ComparedFrame {
    int64_t frame = 0;
    std::size_t pixels = 0;
    std::optional<pictures::PictureDifference> difference; ///< none: the sizes differ

    bool same() const { return difference && difference->pixels == 0; }
};

struct ComparedShots {
    std::string nameA;
    std::string nameB;
    int width = 1;                     ///< of frames' numbers in texts
    double tolerance = 0.0;            ///< of 255
    std::vector<ComparedFrame> frames; ///< in order
    std::vector<int64_t> onlyInA;
    std::vector<int64_t> onlyInB;

    /// How many frames differ; those that one side lacks are among them.
    std::size_t different() const;
    bool same() const { return different() == 0; }
};

/// A line for each frame that differs, and one at the end.
std::string comparedText(const ComparedShots& compared);

std::string comparedJson(const ComparedShots& compared);

} // namespace kovalune::cli
