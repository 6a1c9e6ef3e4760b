// What becomes of the process's work when a signal asks it to end. One handler watches kEndingSignals for as long as there
// is an Interrupt or a RemovedOnSignal; there may be any number of both, on any threads:
//
// - While an Interrupt lives, the first signal is noted, so that everything can be left in order.
// - Any other signal removes the file of every RemovedOnSignal and ends the process.
//
// A signal that is ignored or handled by something else keeps its meaning.
#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

namespace kovalune::shots {

/// A signal has come, and the process is to end by it once everything is in order.
class Interruption : public std::runtime_error {
public:
    explicit Interruption(int signalNumber, const std::string& text = "interrupted")
        : std::runtime_error(text), signalNumber_(signalNumber) {}

    int signalNumber() const { return signalNumber_; }

private:
    int signalNumber_;
};

/// Takes note of the first signal. All that live at the time get the same one, and so do those made before the last of
/// them is released.
class Interrupt {
public:
    Interrupt();
    ~Interrupt() { release(); }
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    /// May be asked by several threads at once, but for the time of release().
    bool came() const { return signalNumber() != 0; }

    /// The first that came; 0: none.
    int signalNumber() const;

    /// From here on this notes nothing, and what came no longer changes.
    void release();

    /// The same, and throws Interruption if a signal has come.
    void finish();

    /// Runs `body` and finishes, whatever it throws: where a signal has come, Interruption takes its place, since the
    /// loop that called the command is to end.
    void during(const std::function<void()>& body);

private:
    bool released_ = false;
    int cameBefore_ = 0; ///< the release
};

/// Removes a file when a signal ends the process. It begins before the file is made, so that there is no moment between;
/// the file's name must be one that no other file can have. One whose name is too long to be opened is left out.
class RemovedOnSignal {
public:
    explicit RemovedOnSignal(const std::filesystem::path& file);
    ~RemovedOnSignal(); // the file may stay from here on
    RemovedOnSignal(const RemovedOnSignal&) = delete;
    RemovedOnSignal& operator=(const RemovedOnSignal&) = delete;

    /// Whether the process is about to end by a signal, which may have looked for the file before it was there.
    static bool isEnding();

    struct Entry; ///< of the list that the handler reads

private:
    Entry* entry_ = nullptr;
};

} // namespace kovalune::shots
