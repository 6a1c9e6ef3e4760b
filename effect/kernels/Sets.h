// The tables of the sets that the target processor may have.
#pragma once

#include "effect/kernels/Kernels.h"

namespace kovalune {

extern const Kernels kPlainKernels;
#if defined(__x86_64__) || defined(__i386__)
extern const Kernels kSse2Kernels;
extern const Kernels kAvx2Kernels;
extern const Kernels kAvx512Kernels;
#endif

} // namespace kovalune
