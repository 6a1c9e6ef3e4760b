// Ctrl-C while the effect works: SIGINT and SIGTERM are noted instead of ending the process, so that the frame
// can be left in order. A second one ends the process at once. A signal that is ignored or handled already
// keeps its meaning.
#pragma once

namespace kovalune {

// One at a time in a process.
class Interrupt {
public:
    Interrupt();
    ~Interrupt() { release(); }
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    // May be asked by several threads at once.
    bool came() const;

    // From here on the signals end the process again, and came() no longer changes.
    void release();
};

} // namespace kovalune
