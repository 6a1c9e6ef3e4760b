// Loaded before the command's own libraries: a file that is written in full and about to reach the disk is the moment
// for the signal TEST_FLUSH_SIGNAL, the first such file or the one that TEST_FLUSH_NUMBER counts.
#include <csignal>
#include <cstdlib>

extern "C" __attribute__((visibility("default"))) int fsync(int) {
    static int flushes = 0;
    const char* const signalNumber = std::getenv("TEST_FLUSH_SIGNAL");
    const char* const flush = std::getenv("TEST_FLUSH_NUMBER");
    if (signalNumber != nullptr && ++flushes == (flush != nullptr ? std::atoi(flush) : 1)) {
        std::raise(std::atoi(signalNumber));
    }
    return 0;
}
