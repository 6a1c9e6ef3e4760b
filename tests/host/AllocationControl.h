// Makes operator new fail on the calling thread, and tells the largest piece that was asked for there.
// Belongs to the whole test program; without a scope it changes nothing.
#pragma once

#include <cstddef>

namespace kovalune::host::test {

/// Until its end plain operator new throws std::bad_alloc on the thread that made it.
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
    std::size_t bytes() const;
};

} // namespace kovalune::host::test
