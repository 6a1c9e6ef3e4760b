// What the effect does when the system loads its library and lets go of it.
#pragma once

#include <cstdint>

namespace kovalune {

/// Why the system calls, with its numbers.
enum class LoadReason : uint32_t {
    kProcessDetach = 0,
    kProcessAttach = 1,
    kThreadAttach = 2,
    kThreadDetach = 3,
};

/// True for the four reasons, false and nothing done for any other. A detach frees the map of dialogs, the
/// parameter objects and the list of pending errors; no command may follow it.
bool loadRoutine(LoadReason reason);

} // namespace kovalune
