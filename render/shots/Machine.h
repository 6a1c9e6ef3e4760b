// What the machine has for a run, and how it is divided.
#pragma once

#include "hostapi/HostApi.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kovalune::shots {

/// Processors that this process may use: those that it was given, and no more than its control groups have time for. At least 1.
int usableProcessors();

/// Bytes of memory that may be taken without pushing out what others use, below the limits of its control groups; 0 where the
/// system does not tell.
uint64_t freeMemory();

/// Frames at once, and threads for each.
struct Division {
    int jobs = 1;
    int threads = 1;
};

struct DivisionRequest {
    std::optional<int> jobs; ///< what is asked for stays as it is
    std::optional<int> threads;
    std::size_t frames = 1;
    uint64_t pixels = 0; ///< of a frame
    PF_PixelFormat format = PF_PixelFormat_ARGB32;
};

/// Together they take the processors, with as many jobs as there are frames for, and as half the free memory bears.
Division divided(const DivisionRequest& request, int processors, uint64_t memory);

/// Of a frame under way, with those that wait for their turn.
uint64_t bytesOfFrame(uint64_t pixels, PF_PixelFormat format);

/// How `division` came about, in a line.
std::string divisionText(const Division& division, const DivisionRequest& request, int processors,
                         uint64_t memory);

} // namespace kovalune::shots
