// What the plug-in says of itself: once of the effect, and once for each context with its clips and parameters.
#pragma once

#include "adapters/openfx/Controls.h"
#include "adapters/openfx/Suites.h"

#include <vector>

namespace kovalune::openfx {

/// By which hosts and saved projects know the plug-in; with the major version and the parameters' names it never changes.
inline constexpr char kIdentifier[] = "com.orvel.Kovalune";

/// What a user sees.
inline constexpr char kPluginLabel[] = "Kovalune";
inline constexpr char kPluginGroup[] = "ORVEL";

/// The version of the effect's interface towards saved projects. What its parameters are called stays within one.
inline constexpr unsigned int kVersionMajor = 1;
inline constexpr unsigned int kVersionMinor = 0;

/// `version`: the effect's, as text. Both throw ActionFailure for what the host refuses and what cannot be done without.
void describe(const Suites& suites, Effect effect, const std::string& version);
void describeInContext(const Suites& suites, Effect effect, const std::string& context,
                       const std::vector<Control>& controls);

} // namespace kovalune::openfx
