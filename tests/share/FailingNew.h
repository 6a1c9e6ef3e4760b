// Makes allocations of the runtime's heap fail, for tests of what happens without memory.
#pragma once

namespace kovalune::test {

/// While it lives, every operator new of this thread fails.
class FailingNew {
public:
    FailingNew();
    ~FailingNew();
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;
};

/// Blocks of operator new that this thread has made and not freed.
long liveAllocations();

} // namespace kovalune::test
