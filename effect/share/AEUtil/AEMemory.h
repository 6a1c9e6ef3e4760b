// Work buffers from the host's handle memory, so that the host can account for them. A block stays locked for
// its life, so its address is stable. All calls to the host's handle functions from here take turns,
// process-wide.
#pragma once

#include "hostapi/HostApi.h"

#include <cstddef>

namespace AEUtil {

class AEMemory {
public:
    /// `bytes` of undefined content, or null where `bytes` is 0 or the suite pointer is null. Throws
    /// `AEException` with PF_Err_OUT_OF_MEMORY where the host has no memory, `kMissingSuite` where it has no
    /// handle suite. No handle stays behind then.
    static void* alloc(std::size_t bytes, const SPBasicSuite* basic);

    /// Gives a block back; does nothing for a null address or suite pointer. Throws `kMissingSuite` where the
    /// host has no handle suite; the block then stays with the host.
    static void release(void* address, const SPBasicSuite* basic);
};

} // namespace AEUtil
