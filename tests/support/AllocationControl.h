// The runtime's heap of a test program: makes allocations fail and tells what was asked for. Every operator new and delete of the
// program is replaced; without one of the scopes below they behave as usual. The thread sanitizer keeps these operators for
// itself, so programs leave this out there.
#pragma once

#include <cstddef>

namespace kovalune::test {

/// Until its end every operator new fails on the thread that made it.
class NoMemory {
public:
    NoMemory();
    ~NoMemory();
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;
};

/// For places that no scope reaches across.
void refuseMemory(bool refused);

/// The largest request since the watch began, in bytes, of the thread that made it.
class LargestRequest {
public:
    LargestRequest();
    [[nodiscard]] std::size_t bytes() const;
};

/// Blocks that this thread has made and not freed.
[[nodiscard]] long liveAllocations();

/// Watches the requests for arrays that do not throw, which is how passes ask for scratch memory, on all threads. The one of the
/// number `failing`, from 1, fails; with 0 none does. One plan at a time.
class ScratchPlan {
public:
    explicit ScratchPlan(int failing);
    ~ScratchPlan();
    ScratchPlan(const ScratchPlan&) = delete;
    ScratchPlan& operator=(const ScratchPlan&) = delete;

    [[nodiscard]] int requests() const;
    /// Of the last request.
    [[nodiscard]] std::size_t bytes() const;
    /// Whether the request that was to fail has come.
    [[nodiscard]] bool hasFailed() const;
};

} // namespace kovalune::test
