// What this process holds of the system, for a run that is to hold no more at its end than in its middle.
#pragma once

#include <cstddef>

namespace kovalune::test {

struct ProcessState {
    std::size_t residentBytes = 0;
    std::size_t heapBytes = 0;   ///< that the program has asked for and not given back
    std::size_t descriptors = 0; ///< open files, pipes, folders
    std::size_t threads = 0;

    /// Gives what the heap keeps for later back to the system first, so that growth is growth.
    static ProcessState now();
};

} // namespace kovalune::test
