// The host's threads, for frames: its suite says who runs the work, never how it is divided.
#pragma once

#include "adapters/openfx/Interface.h"
#include "host/LentThreads.h"

namespace kovalune::openfx {

class HostThreads : public host::LentThreads {
public:
    explicit HostThreads(const MultiThreadSuite& suite) : suite_(suite) {}

    /// Lends none on a thread that the suite itself has started: it does not nest.
    void lend(int most, void (*work)(void* argument), void* argument) override;

    /// 1 to 64; 0 where the host does not say.
    int count() const;

private:
    const MultiThreadSuite& suite_;
};

} // namespace kovalune::openfx
