// Ctrl-C while the command is in the middle of something: the signals that ask it to end are noted instead of ending
// it, so that it can be left in order and then ends by the very signal. A second one ends the process at once. A
// signal that is ignored or handled already keeps its meaning.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

namespace kovalune {

/// A signal has come, and the process is to end by it once everything is in order.
class Interruption : public std::runtime_error {
public:
    explicit Interruption(int signalNumber, const std::string& text = "interrupted")
        : std::runtime_error(text), signalNumber_(signalNumber) {}

    int signalNumber() const { return signalNumber_; }

private:
    int signalNumber_;
};

/// One at a time in a process.
class Interrupt {
public:
    Interrupt();
    ~Interrupt() { release(); }
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    /// May be asked by several threads at once.
    bool came() const { return signalNumber() != 0; }

    /// The first that came; 0: none.
    int signalNumber() const;

    /// From here on the signals end the process again, and what came no longer changes.
    void release();

    /// The same, and throws Interruption if a signal has come.
    void finish();

    /// Runs `body` and finishes, whatever it throws: where a signal has come, Interruption takes its place, since the
    /// loop that called the command is to end.
    void during(const std::function<void()>& body);
};

} // namespace kovalune
