// The version of an effect as text, and what a picture's notes say of how it was rendered.
#pragma once

#include "host/Session.h"
#include "hostapi/Types.h"

#include <string>

namespace kovalune::render {

/// "1.0.1 release, build 8"
std::string versionText(A_u_long packed);

/// "0x02000000"
std::string hexNumber(A_u_long number);

/// A settings file with the version of the session's effect in its first line, a remark.
std::string settingsWithVersion(const host::Session& session, const std::string& settings);

} // namespace kovalune::render
