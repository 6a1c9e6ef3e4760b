// What the control groups of this process leave to it: on a farm, and in a container, a part of the machine.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace kovalune::shots {

struct GroupLimits {
    std::optional<int> processors; ///< by the quota of time, rounded up; at least 1. None: no quota
    std::optional<uint64_t>
        freeMemory; ///< bytes below the limit, with what the group could give back. None: no limit
};

/// The tightest of the process's group and those around it, of the first version and of the second. `root` stands before every
/// name, "/" on a machine; what cannot be read sets no limit.
GroupLimits groupLimits(const std::filesystem::path& root = "/");

} // namespace kovalune::shots
