// Removes a file when the user or the system ends the process by one of kEndingSignals. A signal that is ignored or
// handled already keeps its meaning.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>

namespace kovalune {

/// Begins before the file is made, so that there is no moment between; its name must be one that no other file can
/// have. All of them belong to one thread, and there are never more than kMostAtOnce.
class RemovedOnSignal {
public:
    static constexpr std::size_t kMostAtOnce = 2;

    explicit RemovedOnSignal(const std::filesystem::path& file);
    ~RemovedOnSignal(); ///< the file may stay from here on
    RemovedOnSignal(const RemovedOnSignal&) = delete;
    RemovedOnSignal& operator=(const RemovedOnSignal&) = delete;

    /// Whether a signal has come: the process is about to end.
    bool struck() const;

private:
    std::optional<std::size_t> place_; ///< among all; none for a name that is too long
};

} // namespace kovalune
