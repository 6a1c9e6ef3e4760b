// An effect from a file, and the choice between it and the built-in one. Apart from OpenEffect, so that a plug-in for another
// host, which has the built-in one alone, neither loads files nor touches the environment.
#pragma once

#include "host/EffectModule.h"
#include "render/OpenEffect.h"

#include <optional>
#include <string>

namespace kovalune::render {

/// It is set down with each session that ends, or never. Throws Failure if it cannot be loaded.
host::EffectModule loadedEffect(const std::string& plugin,
                                host::SetDown setDown = host::SetDown::kWithSession);

/// From effects that are loaded from here on, through this process's environment: no other way leads into their code.
void hideRememberedDefaultsFromLoaded();

/// The one from this file, or else the built-in one. Throws Failure if the file cannot be loaded or the set-up fails.
OpenEffect openEffect(const std::optional<std::string>& plugin, int threads, Defaults defaults);

} // namespace kovalune::render
