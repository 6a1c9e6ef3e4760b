// A settings file as a host's parameter: values that hold for every frame of the clip.
#pragma once

#include "host/Session.h"
#include "render/SettingsLayer.h"

#include <cstddef>
#include <string>

namespace kovalune::frei0r {

inline constexpr std::size_t kMostFileBytes = std::size_t{1} << 20;

/// Throws text::Failure, which names the file, where it cannot be read, is larger than kMostFileBytes, or has what is no setting
/// or needs more than a frame: keys, since no unit of the host's time is known; passes; masks and regions.
render::SettingsLayer readSettingsFile(const host::Session& session, const std::string& path);

} // namespace kovalune::frei0r
