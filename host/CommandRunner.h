// The one way into an effect: fills the records of a command, enters the effect, survives what it throws
// and reads the result.
#pragma once

#include "host/CommandContext.h"
#include "host/CommandResult.h"
#include "host/EffectModule.h"

#include <functional>

namespace kovalune::host {

class ParamStore;
class SmartFrame;

/// The handles that an effect entrusts to the host between commands.
struct EffectHandles {
    PF_Handle global = nullptr;
    PF_Handle sequence = nullptr;
    PF_Handle frame = nullptr;
};

/// One command about to be sent.
struct Invocation {
    PF_Cmd command = 0;
    A_long time = 0;
    void* extra = nullptr;
    CommandHook prepare;
    EffectHandles handles;
    // Of a frame.
    PF_Quality quality = PF_Quality_HI;
    A_long width = 0; ///< full size
    A_long height = 0;
    PF_Rect extentHint{};
    PF_RationalScale downsampleX{1, 1};
    PF_RationalScale downsampleY{1, 1};
    SmartFrame* smart = nullptr;
    const PF_LayerDef* inputLayer = nullptr;
    PF_LayerDef* output = nullptr;
};

/// Where it is sent.
struct CommandTarget {
    HostState& host;
    const EffectModule& module;
    ParamStore& params;
};

/// Serialises all commands but PF_Cmd_SMART_RENDER with the others of the module. `seconds`, if given, gets
/// the time spent inside the effect.
CommandResult sendCommand(const CommandTarget& target, Operation& operation, const Invocation& invocation,
                          double* seconds = nullptr);

/// Runs something of the effect's outside of the entry point, with a context of its own so that the host's
/// functions work for it, and serialised like a command. What it throws is booked as a misuse.
void callWithContext(const CommandTarget& target, Operation& operation, PF_Cmd command,
                     const std::function<void()>& body);

} // namespace kovalune::host
