// The flags and the version of an effect as text.
#pragma once

#include "hostapi/Types.h"

#include <string>
#include <vector>

namespace kovalune::cli {

/// The names of the bits that are set, from the lowest on; one without a name is shown as its number.
std::vector<std::string> outFlagNames(A_long flags);
std::vector<std::string> outFlag2Names(A_long flags);

/// "1.0.1 release, build 8"
std::string versionText(A_u_long packed);

/// "0x02000000"
std::string hexNumber(A_u_long number);

} // namespace kovalune::cli
