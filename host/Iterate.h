// The host's iterate_generic: numbered passes over the host's threads, in the order of their numbers unless the operation has another.
#pragma once

#include "hostapi/HostApi.h"

namespace kovalune::host {

/// After a pass has failed no further one begins; of several that failed the lowest number's code counts.
[[nodiscard]] PF_Err iterateGeneric(A_long iterations, void* refcon, PF_IterateGenericFunc pass);

} // namespace kovalune::host
