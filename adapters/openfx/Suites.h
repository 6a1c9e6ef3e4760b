// The host's tables of functions. Property, image effect and parameter suite are indispensable; others may be missing.
#pragma once

#include "adapters/openfx/Interface.h"

#include <string>

namespace kovalune::openfx {

struct Suites {
    Properties host = nullptr; ///< the host's own properties
    const PropertySuite* properties = nullptr;
    const ImageEffectSuite* effects = nullptr;
    const ParameterSuite* params = nullptr;
    const MultiThreadSuite* threads = nullptr; ///< null, or with a multiThread
    const MessageSuite1* messages = nullptr;   ///< null, or with its function
    const MessageSuite2* lastingMessages =
        nullptr; ///< null, or with setPersistentMessage and clearPersistentMessage
};

/// Throws ActionFailure with kMissingHostFeature, naming the suite, where an indispensable one or one of its functions that the
/// plug-in calls is missing. What the other suites lack counts as if the suite was not there.
Suites fetchSuites(const Host& host);

/// The suite for messages alone, for a refusal to load.
const MessageSuite1* fetchMessages(const Host& host);

/// Shows the user `words`. A lasting message is the effect's state until it is cleared; without an effect, or where the host has none,
/// it is a plain message, and without that nothing.
void tell(const Suites& suites, Effect effect, const std::string& words);

} // namespace kovalune::openfx
