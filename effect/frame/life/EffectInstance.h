// The process-wide state of the effect: the one filter object and the errors left behind for the end of a
// command. The set-up commands, which alone change it, come from one thread.
#pragma once

#include "effect/frame/BaseFilter.h"
#include "hostapi/HostApi.h"

#include <optional>
#include <vector>

namespace kovalune {

/// Errors that a command leaves behind for its end; emptied at the start of every command. Frozen:
/// nothing adds to it yet.
class PendingErrorList {
public:
    PendingErrorList() { codes_.reserve(256); }

    /// Writes nothing where the list is empty, as it is whenever commands run at once.
    void clear() {
        if (!codes_.empty()) {
            codes_.clear();
        }
    }
    void add(PF_Err code) { codes_.push_back(code); }
    std::optional<PF_Err> first() const {
        return codes_.empty() ? std::nullopt : std::optional<PF_Err>(codes_.front());
    }

private:
    std::vector<PF_Err> codes_;
};

class EffectInstance {
public:
    /// The first call of a process, whatever its command, sets everything up. Returns the set-up's code, 0
    /// for every later call.
    [[nodiscard]] PF_Err setUpOnFirstCall(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                          PF_LayerDef* output);

    BaseFilter& filter() { return *filter_; }

    /// Turns the filter back into a plain BaseFilter, which answers every later command.
    void end();

    /// From the first call on, until they are freed.
    PendingErrorList& pendingErrors() { return *pendingErrors_; }
    void freePendingErrors() { pendingErrors_.reset(); }
    bool hasPendingErrors() const { return pendingErrors_.has_value(); }

private:
    void establish();

    BaseFilter* filter_ = nullptr;
    bool initialised_ = false;
    std::optional<PendingErrorList> pendingErrors_;
};

EffectInstance& effectInstance();

} // namespace kovalune
