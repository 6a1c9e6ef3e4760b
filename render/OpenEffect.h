// The effect that a tool works with, set up in the reference host: the built-in one or one from a file.
#pragma once

#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Session.h"

#include <optional>
#include <string>

namespace kovalune::render {

/// The host's limit too.
inline constexpr int kMostThreads = 64;

/// An effect from a file; it is set down with each session that ends, or never. Throws Failure if it cannot be loaded.
host::EffectModule loadedEffect(const std::string& plugin,
                                host::SetDown setDown = host::SetDown::kWithSession);

/// For this process from here on, and for effects that are set up from here on.
void hideRememberedDefaults();

class OpenEffect {
public:
    /// `threads` 0 is what the machine has. `factory`: without the user's remembered defaults, for this process
    /// from here on. Throws Failure if the file cannot be loaded or the effect's set-up fails.
    explicit OpenEffect(const std::optional<std::string>& plugin, int threads = 0, bool factory = false);

    host::Session& session() { return session_; }

private:
    host::Host host_;                          ///< made first
    std::optional<host::EffectModule> loaded_; ///< unless it is the linked one
    host::Session session_;
};

/// Throws Failure if the effect reported an error; `action` is what it did, as in "the effect's set-up".
void requireSuccess(const host::CommandResult& result, const std::string& action);

} // namespace kovalune::render
