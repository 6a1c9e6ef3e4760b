// What PF_UpdateParamUI may change of a parameter: its look in the controls, and nothing of its value.
#pragma once

#include "hostapi/HostApi.h"

namespace kovalune::host {

/// Takes over the separator and disabled bits, the size of the control, the name, the twirly flag and, of
/// sliders, the slider limits, the precision and the display flags. A definition of another type gives none
/// of the latter.
void takeUi(PF_ParamDef& kept, const PF_ParamDef& given);

/// Whether `given` differs from the definition that the effect was shown in nothing but what takeUi takes.
bool changesUiOnly(const PF_ParamDef& shown, const PF_ParamDef& given);

} // namespace kovalune::host
