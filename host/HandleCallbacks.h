// The host's handle functions as plain C functions, for the callback table and the suite alike.
#pragma once

#include "hostapi/HostApi.h"

namespace kovalune::host {

PF_Handle newHandle(A_HandleSize size);
void* lockHandle(PF_Handle handle);
void unlockHandle(PF_Handle handle);
void disposeHandle(PF_Handle handle);
A_HandleSize handleSize(PF_Handle handle);
[[nodiscard]] PF_Err resizeHandle(A_HandleSize size, PF_Handle* handle);

} // namespace kovalune::host
