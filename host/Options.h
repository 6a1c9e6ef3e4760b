// What a reference host can be told: who it says it is, how it runs iterations, how it lays out memory. A plain record;
// see Host for when a change takes effect.
#pragma once

#include "hostapi/HostApi.h"

#include <cstddef>
#include <optional>
#include <string>

namespace kovalune::host {

class LentThreads;

struct HostOptions {
    // Identity, as the effect reads it from PF_InData and get_platform_data.
    A_long applId = PF_AppID_FXTC;
    PF_SpecVersion version{12, 14};
    PF_Quality quality = PF_Quality_HI;
    A_long timeStep = 1;
    A_long totalTime = 1000;
    A_u_long timeScale = 24;
    std::string executablePath = "kovalune-host";
    std::optional<std::string> resourcePath; ///< default: the file of the effect module
    void* mainWindow = nullptr;
    bool everySuiteVersion = false; ///< also the versions of suites that hosts of this era need not have

    // Iterations. The calling thread counts as one of `threads`.
    int threads = 0;    ///< 1 to 64; 0: what the machine has
    int iterations = 0; ///< what PF_Iterations_ONCE_PER_PROCESSOR means; 0: `threads`
    bool threaded = true;
    /// Work in place of threads of the host's own. Outlive the host, and count as they are when it is made.
    LentThreads* lentThreads = nullptr;

    // Memory of worlds. The first two are multiples of 4 up to 65536.
    int rowPadding = 0; ///< bytes after the pixels of each row
    int dataOffset = 0; ///< bytes by which the first pixel misses 64-byte alignment
    /// Bytes kept for reuse between frames. A float frame of 3840x2160 leaves up to 1.7 GB behind, which the next one
    /// takes again; what is more than this goes back to the system, the longest unused first.
    std::size_t poolCapBytes = std::size_t{1} << 31;
};

/// As many threads as there may be at work, the calling one included: 1 to 64.
[[nodiscard]] int threadCountOf(const HostOptions& options);

/// Whether an option that counts bytes of a world's layout may have this value: a multiple of 4 from 0 to 65536.
[[nodiscard]] bool isLayoutNumber(int bytes);

} // namespace kovalune::host
