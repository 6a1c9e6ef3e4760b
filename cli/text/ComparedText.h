// Two compared pictures as `kovalune compare` tells of them: as lines, or as JSON for programs.
#pragma once

#include "pictures/Picture.h"
#include "pictures/PictureDifference.h"

#include <optional>
#include <string>

namespace kovalune::cli {

struct ComparedPictures {
    const std::string& nameA;
    const std::string& nameB;
    const pictures::Picture& a;
    const pictures::Picture& b;
    std::optional<pictures::PictureDifference> difference; ///< none: the sizes differ
    double tolerance = 0.0;                                ///< of 255
};

std::string comparedText(const ComparedPictures& compared);

std::string comparedJson(const ComparedPictures& compared);

} // namespace kovalune::cli
