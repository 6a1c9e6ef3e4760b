// The effect that a tool works with, set up in the reference host: the built-in one or one that was loaded.
#pragma once

#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Session.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kovalune::render {

/// The host's limit too.
inline constexpr int kMostThreads = 64;

/// What the values of a new session are: the effect's own, or where the user has remembered some, those.
enum class Defaults : uint8_t { kFactory, kRemembered };

class OpenEffect {
public:
    /// The built-in one. `threads` 0 is what the machine has. Nothing of the process changes. Throws Failure if the effect's
    /// set-up fails.
    OpenEffect(int threads, Defaults defaults);

    /// One from a file, which goes by the environment for the remembered defaults.
    OpenEffect(host::EffectModule loaded, int threads);

    host::Session& session() { return session_; }

private:
    host::Host host_;                          ///< made first
    std::optional<host::EffectModule> loaded_; ///< unless it is the linked one
    host::Session session_;
};

/// Throws Failure if the effect reported an error; `action` is what it did, as in "the effect's set-up".
void requireSuccess(const host::CommandResult& result, const std::string& action);

} // namespace kovalune::render
