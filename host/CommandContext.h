// What an effect reference stands for during one command: the way from a callback back to the host, the
// session and the frame. One object a command; a reference is known as long as its command runs and is that
// of no other command before or after it.
#pragma once

#include "host/Operation.h"
#include "hostapi/HostApi.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace kovalune::host {

class ParamStore;
struct HostState;
class SmartFrame;

class CommandContext {
public:
    CommandContext(HostState& host, Operation& operation, ParamStore& params, PF_Cmd command);
    ~CommandContext(); ///< books the parameters that are still checked out
    CommandContext(const CommandContext&) = delete;
    CommandContext& operator=(const CommandContext&) = delete;

    /// A running number in the shape of a pointer, never null: an address would come again with a later
    /// command, and a stale reference would pass for that one's.
    PF_ProgPtr reference() const { return reference_; }

    HostState& host;
    Operation& operation;
    ParamStore& params;
    const PF_Cmd command;
    const bool watched;                      ///< somebody logs or may refuse the calls of this command
    SmartFrame* smart = nullptr;             ///< of the smart commands
    const PF_LayerDef* inputLayer = nullptr; ///< what parameter 0 holds, if anything
    A_long currentTime = 0;
    std::vector<PF_ParamDef> shown; ///< the parameter array as the effect got it; empty: none
    void* moduleHandle = nullptr;
    std::string modulePath;

    /// The definition that checkout_param and the parameter array give, the layer of parameter 0 included.
    /// The index must be in range.
    PF_ParamDef definitionAt(A_long index, A_long time) const;
    void fillLayer(PF_ParamDef& def) const; ///< what is special about parameter 0

    /// What the effect knows as this definition: the array's entry, or the one at the command's time. The
    /// index must be in range.
    PF_ParamDef shownAt(A_long index) const;

    /// Check-outs are known by the record they were written to.
    void paramCheckedOut(const PF_ParamDef* record);
    bool paramCheckedIn(const PF_ParamDef* record); ///< false: not checked out
    void paramExcused(const PF_ParamDef* record);   ///< the host refused the check-in

private:
    struct Checkouts {
        int open = 0;
        int excused = 0; ///< of the open ones
    };

    const PF_ProgPtr reference_;
    std::mutex mutex_;
    std::map<const PF_ParamDef*, Checkouts> checkouts_;
};

/// The context of the command that this thread works for, null outside of commands.
CommandContext* currentContext();

/// Makes a context current on this thread until its end.
class ContextScope {
public:
    explicit ContextScope(CommandContext* context);
    ~ContextScope();
    ContextScope(const ContextScope&) = delete;
    ContextScope& operator=(const ContextScope&) = delete;

private:
    CommandContext* previous_;
};

/// The context of a reference that came from the effect: null, with the misuse booked, unless it is that of
/// this thread's command or, on a thread of the effect's own, of any running one.
CommandContext* contextOf(PF_ProgPtr reference, const char* call);

} // namespace kovalune::host
