// `kovalune compare`: whether two pictures are the same, and where they are not.
#pragma once

#include "cli/Arguments.h"

#include <string>

namespace kovalune {

struct Comparison {
    bool same = false;
    std::string text;
};

/// Compares what the files hold, sample by sample and exactly, as fractions of white. Missing alpha is full and grey
/// is spread; alpha is not applied, whatever its kind. A NaN is the same as one with the same bits only, and -0
/// the same as 0. Pictures of different sizes are different, and no picture of their differences is written.
/// Throws Failure.
Comparison compareFiles(const CompareArguments& arguments);

} // namespace kovalune
