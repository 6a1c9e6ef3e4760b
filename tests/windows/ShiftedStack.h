// The plug-in as a 32-bit host of another compiler meets it: every call into it, iterated passes included, is made on a
// stack that is aligned to 4 bytes and no more.
#pragma once

#include "host/EffectModule.h"

#include <cstdint>

namespace kovalune::test {

/// Leaves the stack pointer `shift` bytes below where it would be; 0, 4, 8 and 12 are all there is. The module has to
/// outlive what this returns, and only the last one made works.
host::EffectModule onShiftedStack(const host::EffectModule& module, uint32_t shift);

} // namespace kovalune::test
