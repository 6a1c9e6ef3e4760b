// What a reference host can be told: who it says it is, how it lays out memory, how it runs iterations,
// what it watches, and how it misbehaves on purpose. A plain record; see Host for when a change takes effect.
#pragma once

#include "hostapi/HostApi.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::host {

struct SuiteName {
    std::string name;
    int version = 1;

    friend bool operator==(const SuiteName&, const SuiteName&) = default;
};

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
    bool shuffleIterations = false;
    uint64_t shuffleSeed = 1;

    // Memory. All byte counts of the layout are multiples of 4.
    int rowPadding = 0;           ///< bytes behind the pixels of each row
    int rowGuard = 16;            ///< further bytes behind the padding, with `audit` only
    int dataOffset = 0;           ///< bytes by which the first pixel misses 64-byte alignment
    bool poisonNewWorlds = false; ///< fill uncleared new worlds and handles with a pattern
    std::size_t poolCapBytes = std::size_t{1} << 30; ///< bytes kept for reuse; nothing is pooled with `audit`

    /// Watching.
    bool audit = false;       ///< guard bytes, fresh memory for every request
    bool recordCalls = false; ///< keep the log that Host::calls() gives
    std::function<bool(int current, int total)>
        onProgress; ///< false cancels; must bear several threads at once

    // Misbehaviour for tests.
    std::vector<SuiteName> withheldSuites;
    bool nullBasicSuite = false;
    /// Bytes written after each record that the effect hands over, up to 32: what a host of a later interface does, whose
    /// records are longer.
    int extraRecordBytes = 0;
    bool nullInputWorld = false;  ///< checkout_layer_pixels succeeds and gives a null pointer
    bool nullOutputWorld = false; ///< checkout_output likewise
    A_long outputWidthDelta = 0;  ///< added to the output world's size
    A_long outputHeightDelta = 0;
    std::optional<PF_PixelFormat> forcePixelFormat; ///< what PF_GetPixelFormat reports for every world
    std::optional<uint32_t> firstLayerWord;         ///< first word of the value of parameter 0
    bool allowEmpty = false; ///< pictures with a side of 0, and smart renders of empty results
    bool allowHuge = false;  ///< pictures with a side above 30000

    bool globalSetdownAtEnd = true; ///< Session::close sends PF_Cmd_GLOBAL_SETDOWN
};

/// Faults for one operation: the construction of a Session, one run() or one render() (both of its commands).
struct FaultPlan {
    int failCall = 0; ///< the n-th counted host call fails, from 1; 0: none
    PF_Err failCode = PF_Err_INVALID_INDEX;
    bool failIterateAfter = false; ///< an iterate_generic chosen to fail runs all its iterations first
    int cancelAtProgress = 0;      ///< this progress call and all later ones report a cancel, from 1; 0: none
};

} // namespace kovalune::host
