// The command behind the host's "Options" button: shows the Option dialog, then remembers the instance's settings as the
// defaults of new instances, or forgets what was remembered.
#pragma once

#include "hostapi/HostApi.h"

namespace kovalune {

/// Comes back when the dialog has ended. `params` are the instance's values, as the host hands them in. What cannot be
/// shown, read or written is passed over in silence. Throws only where the host gave no basic suite.
void showOptionDialog(PF_InData* in, PF_ParamDef** params);

} // namespace kovalune
