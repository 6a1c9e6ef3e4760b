// The parts of a Host, as its callbacks use them.
#pragma once

#include "host/CallWatch.h"
#include "host/Handles.h"
#include "host/HostManners.h"
#include "host/MemoryPool.h"
#include "host/MemoryWatch.h"
#include "host/Options.h"
#include "host/RowWork.h"
#include "host/SuiteLedger.h"
#include "host/ThreadPool.h"
#include "host/Worlds.h"

namespace kovalune::host {

/// What a layer over the host puts in the place of the host's own watches and manners.
struct HostLayer {
    CallWatch& watch;
    MemoryWatch& memory;
    HostManners& manners;
};

struct HostState {
    HostState(HostOptions& hostOptions, const HostLayer& layer)
        : options(hostOptions), watch(layer.watch), memory(layer.memory), manners(layer.manners),
          threads(hostOptions.lentThreads) {}

    HostOptions& options;
    CallWatch& watch;
    MemoryWatch& memory;
    HostManners& manners;
    ThreadPool threads;
    RowWork rowWork{threads, options};
    MemoryPool pool;
    WorldStore worlds{pool, memory, manners, rowWork};
    HandleStore handles{pool, memory, watch};
    SuiteLedger suites;

    /// Throws HostError for values out of range, those of the layer included.
    void checkOptions() const;

    int iterationCount() const; ///< what PF_Iterations_ONCE_PER_PROCESSOR means
};

} // namespace kovalune::host
