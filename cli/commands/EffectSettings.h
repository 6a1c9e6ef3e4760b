// What a command line says about the effect, brought into a session: its defaults, then the file of
// parameters, then the single settings, then the view.
#pragma once

#include "cli/arguments/Arguments.h"
#include "render/OpenEffect.h"
#include "render/Settings.h"
#include "render/ShotSettings.h"

#include <optional>
#include <string>

namespace kovalune::cli {

/// Without the user's remembered ones also where there is a file of parameters, which means the same for every user.
render::Defaults startingDefaults(const EffectArguments& arguments);

render::OpenEffect openEffect(const EffectArguments& arguments);

/// Throws Failure for labels and values that the effect does not take, for a pass that there is not, and for a remembered
/// default that cannot be chosen and was not overruled. The session has its first values, and keeps them.
render::ShotSettings shotSettings(host::Session& session, const EffectArguments& arguments,
                                  const std::optional<std::string>& view);

/// The same brought into the session, for a command that knows neither frames nor passes: throws Failure for keys and passes.
render::NamedParams applySettings(host::Session& session, const EffectArguments& arguments,
                                  const std::optional<std::string>& view);

/// The one of --cpu, which the machine has; else nothing changes.
void chooseInstructionSet(const std::optional<std::string>& cpu);

} // namespace kovalune::cli
