// The callback tables that go with PF_InData. Every slot is filled; functions that this host does not have
// refuse with INVALID_CALLBACK and book a misuse.
#pragma once

#include "hostapi/Callbacks.h"

namespace kovalune::host {

PF_InteractCallbacks interactCallbacks();

/// One table for all commands, as the interface has it by pointer.
PF_UtilCallbacks* utilCallbacks();

} // namespace kovalune::host
