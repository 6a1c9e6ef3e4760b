// `kovalune render` for several frames: a line while it runs, and one at the end.
#pragma once

#include "cli/arguments/Arguments.h"
#include "render/OpenEffect.h"
#include "render/ShotSettings.h"
#include "render/shots/SequencePlan.h"
#include "render/shots/ShotAreas.h"

#include <string>

namespace kovalune::cli {

/// The frames of the plan that are not finished, as --frames takes them; of pictures without numbers their names, a line each.
/// Empty where all are.
std::string missingText(render::OpenEffect& effect, const render::ShotSettings& settings,
                        const shots::ShotAreas& areas, const shots::SequencePlan& plan,
                        const RenderArguments& arguments);

/// What spreads the plan over machines has to know, a line each: the frames as --frames takes them (none of pictures without
/// numbers), their count, the memory that rendering takes in units of 2^20 bytes (0: not known), which of the options of
/// frames and existing outputs are given, and at last the outputs' folder as it stands, whatever signs are in it.
std::string framesForFarm(const shots::SequencePlan& plan, const RenderArguments& arguments);

/// Throws Failure of the worst frame's kind where one failed, and Interruption; everything else is told by then.
void renderShot(render::OpenEffect& effect, const render::ShotSettings& settings,
                const shots::ShotAreas& areas, const shots::SequencePlan& plan,
                const RenderArguments& arguments);

} // namespace kovalune::cli
