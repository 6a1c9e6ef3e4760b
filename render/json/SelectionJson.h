// What the settings of a frame selected and changed, as JSON.
#pragma once

#include "effect/Kovalune.h"
#include "host/Session.h"

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace kovalune::render {

/// "off" or "not in this view": why a stage has no counts.
std::string restText(const host::Session& session, std::size_t stage);

/// Into the object `json`, with the session's values as those of the frame: "pixels", and an array "stages", of which each says
/// what it is, its "state" and, where that is "run", its counts.
void addCounts(nlohmann::ordered_json& json, const host::Session& session, const FrameReport& counts);

} // namespace kovalune::render
