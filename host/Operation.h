// One operation of a session: its set-up, one command, or one render with both of its commands. It carries the
// progress of that operation and whether it was cancelled; a layer over the host may derive from it and refuse calls.
// An operation may run on several threads.
#pragma once

#include "hostapi/HostApi.h"

#include <atomic>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace kovalune::host {

/// How far an operation is, as the effect reports it; false cancels. Must bear several threads at once.
using ProgressFunction = std::function<bool(int current, int total)>;

/// Why a host call does not do what it was called for.
struct Refusal {
    PF_Err code = PF_Err_NONE;
    bool afterPasses = false; ///< an iterate_generic runs its passes first
};

class Operation {
public:
    explicit Operation(ProgressFunction onProgress = {}) : onProgress_(std::move(onProgress)) {}
    virtual ~Operation() = default;
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    /// Whether refusalOf is to be asked at all; the answer does not change.
    virtual bool mayRefuse() const { return false; }

    /// Asked once for every fallible host call.
    [[nodiscard]] virtual std::optional<Refusal> refusalOf(const char* /*call*/) { return std::nullopt; }
    virtual bool anyRefused() const { return false; }

    /// The order in which the passes of an iterate_generic begin; empty: that of their numbers.
    virtual std::vector<A_long> passOrder(A_long /*passes*/) { return {}; }

    /// What the effect reports; false: it is to end.
    virtual bool goesOn(A_long current, A_long total) {
        if (onProgress_ && !onProgress_(current, total)) {
            cancel();
        }
        return !cancelled();
    }

    void cancel() { cancelled_ = true; }
    bool cancelled() const { return cancelled_; }

private:
    const ProgressFunction onProgress_;
    std::atomic<bool> cancelled_{false};
};

} // namespace kovalune::host
