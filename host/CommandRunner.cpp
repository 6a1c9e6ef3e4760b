#include "host/CommandRunner.h"

#include "host/CallbackTables.h"
#include "host/HostState.h"
#include "host/ParamStore.h"
#include "host/SuiteTables.h"

#include <algorithm>
#include <chrono>
#include <exception>

namespace kovalune::host {

namespace {

PF_InData inDataFor(const CommandTarget& target, CommandContext& context, const Invocation& invocation) {
    const HostOptions& options = target.host.options;
    PF_InData in{};
    in.inter = interactCallbacks();
    in.utils = utilCallbacks();
    in.effect_ref = context.reference();
    in.quality = invocation.quality;
    in.version = options.version;
    in.appl_id = options.applId;
    in.num_params = target.params.size();
    in.current_time = invocation.time;
    in.time_step = options.timeStep;
    in.local_time_step = options.timeStep;
    in.total_time = options.totalTime;
    in.time_scale = options.timeScale;
    in.field = PF_Field_FRAME;
    in.width = invocation.width;
    in.height = invocation.height;
    in.extent_hint = invocation.extentHint;
    in.downsample_x = invocation.downsampleX;
    in.downsample_y = invocation.downsampleY;
    in.pixel_aspect_ratio = {1, 1};
    in.global_data = invocation.handles.global;
    in.sequence_data = invocation.handles.sequence;
    in.frame_data = invocation.handles.frame;
    in.pica_basicP = target.host.manners.offersBasicSuite() ? basicSuite() : nullptr;
    return in;
}

bool carriesParams(PF_Cmd command) {
    return command != PF_Cmd_GLOBAL_SETUP && command != PF_Cmd_GLOBAL_SETDOWN &&
           command != PF_Cmd_PARAMS_SETUP && command != PF_Cmd_SMART_PRE_RENDER &&
           command != PF_Cmd_SMART_RENDER;
}

std::vector<PF_ParamDef> paramsFor(const CommandTarget& target, const CommandContext& context,
                                   const Invocation& invocation) {
    if (!carriesParams(invocation.command)) {
        return {};
    }
    std::vector<PF_ParamDef> params = target.params.definitionsAt(invocation.time);
    context.fillLayer(params.front());
    return params;
}

void enterEffect(PF_EntryPoint entry, CommandFrame& frame, PF_Cmd command, CommandResult& result) {
    std::vector<PF_ParamDef*> list;
    for (PF_ParamDef& param : frame.params) {
        list.push_back(&param);
    }
    list.push_back(nullptr);
    PF_ParamDef** params = frame.params.empty() ? nullptr : list.data();
    result.threw = true;
    result.code = PF_Err_INTERNAL_STRUCT_DAMAGED;
    try {
        result.code = entry(command, &frame.in, &frame.out, params, frame.output, frame.extra);
        result.threw = false;
    } catch (const std::exception& error) {
        result.exceptionText = error.what();
    } catch (long value) {
        result.thrownValue = value;
    } catch (int value) {
        result.thrownValue = value;
    } catch (...) {
        result.exceptionText = "an exception of an unknown type";
    }
}

std::string textOf(const A_char (&message)[PF_MAX_EFFECT_MSG_LEN + 1]) {
    const A_char* end = std::find(message, message + sizeof message, '\0');
    return {message, end};
}

std::unique_lock<std::mutex> commandLock(const CommandTarget& target, PF_Cmd command) {
    if (command == PF_Cmd_SMART_RENDER) {
        return {};
    }
    return std::unique_lock(target.module.commandMutex());
}

void describeModule(const CommandTarget& target, CommandContext& context) {
    context.moduleHandle = target.module.systemHandle();
    context.modulePath = target.module.path();
}

} // namespace

CommandResult sendCommand(const CommandTarget& target, Operation& operation, const Invocation& invocation,
                          double* seconds) {
    CommandContext context(target.host, operation, target.params, invocation.command);
    describeModule(target, context);
    context.smart = invocation.smart;
    context.inputLayer = invocation.inputLayer;
    context.currentTime = invocation.time;

    CommandResult result;
    result.command = invocation.command;
    result.out.global_data = invocation.handles.global;
    result.out.sequence_data = invocation.handles.sequence;
    result.out.frame_data = invocation.handles.frame;
    PF_InData in = inDataFor(target, context, invocation);
    std::vector<PF_ParamDef> params = paramsFor(target, context, invocation);
    CommandFrame frame{in, result.out, params, invocation.output, invocation.extra};
    {
        const std::unique_lock<std::mutex> lock = commandLock(target, invocation.command);
        const ContextScope scope(&context);
        if (invocation.prepare) {
            invocation.prepare(frame);
        }
        context.shown = params;
        const auto start = std::chrono::steady_clock::now();
        enterEffect(target.module.entry(), frame, invocation.command, result);
        if (seconds != nullptr) {
            *seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        }
    }
    result.returnMsg = textOf(result.out.return_msg);
    return result;
}

void callWithContext(const CommandTarget& target, Operation& operation, PF_Cmd command,
                     const std::function<void()>& body) {
    CommandContext context(target.host, operation, target.params, command);
    describeModule(target, context);
    const std::lock_guard lock(target.module.commandMutex());
    const ContextScope scope(&context);
    try {
        body();
    } catch (...) {
        target.host.watch.misused("an exception left a function of the effect");
    }
}

} // namespace kovalune::host
