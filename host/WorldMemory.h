// A world as the host knows it, whatever the effect's struct says by now, and the memory under it.
#pragma once

#include "host/MemoryPool.h"
#include "hostapi/HostApi.h"

#include <cstddef>

namespace kovalune::host {

struct WorldInfo {
    PF_PixelFormat format;
    std::byte* data;         ///< of row 0
    std::ptrdiff_t rowBytes; ///< from a row to the next; below 0 where row 0 is the last in memory
    A_long width;
    A_long height;
    bool foreign = false; ///< in the memory of the host's caller
};

/// A world in the host's own memory. After the pixels of each row come the padding and the guard.
struct WorldMemory {
    WorldInfo info{};
    MemoryBlock block;
    std::size_t pixelBytes = 0; ///< of a row, like the next two
    std::size_t paddingBytes = 0;
    std::size_t guardBytes = 0;
};

} // namespace kovalune::host
