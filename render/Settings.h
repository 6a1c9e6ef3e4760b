// Values brought into a session by the labels of their parameters.
#pragma once

#include "host/Session.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace kovalune::render {

/// The parameters that somebody has named, by their index.
using NamedParams = std::set<int>;

/// Sets the parameter and returns its index. Throws Failure for a label or a value that the effect does not take.
int setParameter(host::Session& session, std::string_view label, std::string_view value);

struct RefusedChoice {
    int index = 0;
    std::string reason;
};

/// A popup whose value cannot be chosen, if there is one. What setParameter sets can be: such a value was remembered.
std::optional<RefusedChoice> refusedChoice(const host::Session& session);

} // namespace kovalune::render
