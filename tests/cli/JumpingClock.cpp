// Loaded before the command's own libraries: the time of day jumps by TEST_CLOCK_SECONDS with every look at it, forward and back
// in turn. The clock that measures how long something takes is another one, which no system lets jump.
#include <atomic>
#include <cstdlib>
#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#define EXPORTED __attribute__((visibility("default")))

namespace {

time_t jump() {
    static std::atomic<unsigned> looks{0};
    const char* const seconds = std::getenv("TEST_CLOCK_SECONDS");
    const long size = seconds != nullptr ? std::atol(seconds) : 0;
    return looks.fetch_add(1) % 2 == 0 ? size : -size;
}

} // namespace

extern "C" {

EXPORTED int clock_gettime(clockid_t clock, timespec* now) {
    const long result = syscall(SYS_clock_gettime, clock, now);
    if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE)) {
        now->tv_sec += jump();
    }
    return static_cast<int>(result);
}

EXPORTED time_t time(time_t* now) {
    timespec real{};
    clock_gettime(CLOCK_REALTIME, &real);
    if (now != nullptr) {
        *now = real.tv_sec;
    }
    return real.tv_sec;
}

EXPORTED int gettimeofday(timeval* __restrict now, void* __restrict /*zone*/) {
    timespec real{};
    clock_gettime(CLOCK_REALTIME, &real);
    *now = {real.tv_sec, real.tv_nsec / 1000};
    return 0;
}

} // extern "C"
