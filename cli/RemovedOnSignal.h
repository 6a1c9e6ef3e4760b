// Removes a file when the user or the system ends the process by one of kEndingSignals. A signal that is ignored or
// handled already keeps its meaning.
#pragma once

#include <filesystem>

namespace kovalune {

// One at a time in a process. Begins before the file is made, so that there is no moment between; its name must
// be one that no other file can have.
class RemovedOnSignal {
public:
    explicit RemovedOnSignal(const std::filesystem::path& file);
    ~RemovedOnSignal(); // the file may stay from here on
    RemovedOnSignal(const RemovedOnSignal&) = delete;
    RemovedOnSignal& operator=(const RemovedOnSignal&) = delete;

    // Whether a signal has come: the process is about to end.
    bool struck() const;
};

} // namespace kovalune
