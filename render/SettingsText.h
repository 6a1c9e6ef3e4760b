// Parameter settings as text, one LABEL=VALUE a line, as it stands in files of parameters.
// Blank lines and lines that start with ';' or '#' say nothing. The defaults file of the effect is read too, with its
// section's name and its colours as one line a component ("Color 1.r=3").
#pragma once

#include "host/Session.h"
#include "render/Settings.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kovalune::render {

/// Sets what the text says. Throws Failure as parseSettingsText does, and if it has keys or passes.
NamedParams applyParamsText(host::Session& session, std::string_view text, const std::string& name);

/// All parameters that can be set, with their values to the last bit, as applyParamsText takes them. What it
/// could not take, as a label that several parameters have, is a line that says nothing.
std::string paramsFileText(const host::Session& session);

/// The same for the parameters that `chosen` is true of, by their index; with `frame`, as keys for that frame.
std::string paramsFileText(const host::Session& session, const std::function<bool(int index)>& chosen,
                           std::optional<int64_t> frame = std::nullopt);

} // namespace kovalune::render
