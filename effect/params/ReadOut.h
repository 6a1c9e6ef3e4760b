// Copies the parameters' current values into the render settings, raw: a range stays a percentage, a colour
// stays 8-bit, a check box one byte. Whatever conversion a value needs is made where it is used.
#pragma once

#include "effect/params/ParamGetter.h"
#include "effect/share/RenderSettings.h"

namespace kovalune {

/// Reads every parameter, greyed out or not, into the record (null: into the parameter objects alone). Stops
/// at the first failure and returns it.
PF_Err readParameters(RenderSettings* record, ParamGetter& getter);

/// Gives every parameter back. Stops at the first failure and returns it.
PF_Err giveBackParameters(ParamGetter& getter);

} // namespace kovalune
