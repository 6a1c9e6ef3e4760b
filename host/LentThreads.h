// Threads of somebody else's in place of a host's own: for a host that works inside another one.
#pragma once

namespace kovalune::host {

class LentThreads {
public:
    virtual ~LentThreads() = default;

    /// Calls work(argument) up to `most` times, at once on threads of its choice, and returns when all calls have returned. It
    /// may make fewer calls, or none: the pool does the rest on the calling thread. Called from several threads at once.
    virtual void lend(int most, void (*work)(void* argument), void* argument) = 0;
};

} // namespace kovalune::host
