// What the blurs' headers name of the passes along lines (`LinePass.h`), so that each pass of a depth and a scan is a
// name for its instantiation.
#pragma once

#include "effect/raster/PixelTraits.h"
#include "hostapi/HostApi.h"

namespace kovalune {

struct RunScan;
struct WindowScan;

// In the form that the host iterates over the record of `Blur`. They return PF_Err_OUT_OF_MEMORY where there is no scratch
// memory, else no error.
template <class Blur>
PF_Err blurRows(void* record, A_long thread, A_long i, A_long n);
template <class Blur>
PF_Err blurColumns(void* record, A_long thread, A_long i, A_long n);

} // namespace kovalune
