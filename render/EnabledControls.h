// Which controls have an effect, by the effect's own rules.
#pragma once

#include "host/Session.h"

#include <vector>

namespace kovalune::render {

/// By the index of the parameter, for the session's values at its start: false where the effect greys the control.
std::vector<bool> enabledControls(host::Session& session);

} // namespace kovalune::render
