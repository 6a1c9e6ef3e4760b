// What goes into one command of an effect and what comes back from it, as the host's callers see it.
#pragma once

#include "hostapi/HostApi.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::host {

/// What every effect command gives back.
struct CommandResult {
    PF_Cmd command = 0;
    PF_Err code = PF_Err_NONE;
    std::string returnMsg;
    bool threw = false;        ///< an exception left the entry point; `code` is then INTERNAL_STRUCT_DAMAGED
    std::string exceptionText; ///< of a standard exception
    std::optional<long> thrownValue; ///< of a thrown int or long
    PF_OutData out{};                ///< as the effect left it

    bool ok() const { return code == PF_Err_NONE && !threw; }
};

/// What a command is about to hand to the effect, open to change by tests.
struct CommandFrame {
    PF_InData& in;
    PF_OutData& out;
    std::vector<PF_ParamDef>& params; ///< empty: a null array is passed
    PF_LayerDef* output;
    void* extra;
};
using CommandHook = std::function<void(CommandFrame&)>;

} // namespace kovalune::host
