// The flags of an effect as text.
#pragma once

#include "hostapi/Types.h"
#include "render/EffectVersion.h"

#include <string>
#include <vector>

namespace kovalune::cli {

/// The names of the bits that are set, from the lowest on; one without a name is shown as its number.
std::vector<std::string> outFlagNames(A_long flags);
std::vector<std::string> outFlag2Names(A_long flags);

using render::hexNumber;
using render::versionText;

} // namespace kovalune::cli
