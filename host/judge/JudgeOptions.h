// What a judged host can be told beyond what every host can: what it watches, and how it misbehaves on purpose. A plain
// record; see Host for when a change takes effect.
#pragma once

#include "host/Operation.h"
#include "host/Options.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::host::judge {

struct SuiteName {
    std::string name;
    int version = 1;

    friend bool operator==(const SuiteName&, const SuiteName&) = default;
};

struct JudgeOptions : HostOptions {
    // Watching.
    bool audit = false;           ///< guard bytes, fresh memory for every request
    int rowGuard = 16;            ///< further bytes after the padding, with `audit` only; a multiple of 4
    bool poisonNewWorlds = false; ///< fill uncleared new worlds and handles with this byte
    uint8_t poison = 0xCD;
    bool recordCalls = false;    ///< keep the log that JudgedHost::calls() gives
    ProgressFunction onProgress; ///< of every operation, beside that of the render request

    // The order of iterations.
    bool shuffleIterations = false;
    uint64_t shuffleSeed = 1;

    // Misbehaviour.
    std::vector<SuiteName> withheldSuites;
    bool nullBasicSuite = false;
    /// Bytes written after each record that the effect hands over, up to 32: what a host of a later interface does,
    /// whose records are longer.
    int extraRecordBytes = 0;
    bool nullInputWorld = false;  ///< checkout_layer_pixels succeeds and gives a null pointer
    bool nullOutputWorld = false; ///< checkout_output likewise
    A_long outputWidthDelta = 0;  ///< added to the output world's size
    A_long outputHeightDelta = 0;
    std::optional<PF_PixelFormat> forcePixelFormat; ///< what PF_GetPixelFormat reports for every world
    std::optional<uint32_t> firstLayerWord;         ///< first word of the value of parameter 0
    bool allowEmpty = false; ///< pictures with a side of 0, and smart renders of empty results
    bool allowHuge = false;  ///< pictures with a side above 30000
};

} // namespace kovalune::host::judge
