#include "adapters/openfx/HostThreads.h"

#include <algorithm>

namespace kovalune::openfx {

namespace {

constexpr unsigned int kMostThreads = 64;

struct Call {
    void (*work)(void*);
    void* argument;
};

void enter(unsigned int, unsigned int, void* argument) {
    const auto* const call = static_cast<const Call*>(argument);
    call->work(call->argument);
}

} // namespace

void HostThreads::lend(int most, void (*work)(void* argument), void* argument) {
    if (suite_.isSpawnedThread != nullptr && suite_.isSpawnedThread() != 0) {
        return;
    }
    Call call = {work, argument};
    // A host that refuses has lent nothing, which is what the answer would tell.
    static_cast<void>(suite_.multiThread(enter, static_cast<unsigned int>(most), &call));
}

int HostThreads::count() const {
    unsigned int count = 0;
    if (suite_.numCpus == nullptr || suite_.numCpus(&count) != kOk) {
        return 0;
    }
    return static_cast<int>(std::min(count, kMostThreads));
}

} // namespace kovalune::openfx
