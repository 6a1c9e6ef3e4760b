// The inside of a Session, shared by its set-up and its renders.
#pragma once

#include "host/CommandRunner.h"
#include "host/HostState.h"
#include "host/LayerWorlds.h"
#include "host/ParamStore.h"
#include "host/Session.h"

#include <mutex>

namespace kovalune::host {

struct Session::State {
    State(HostState& hostState, EffectModule& effectModule) : host(hostState), module(effectModule) {}

    HostState& host;
    EffectModule& module;
    ParamStore params;
    CommandResult setup;
    A_u_long effectVersion = 0;
    A_long outFlags = 0;
    A_long outFlags2 = 0;
    bool globalUp = false;
    bool closed = false;

    CommandTarget target() { return {host, module, params}; }

    EffectHandles currentHandles() const;

    /// Keeps what the command handed back of the data that are its to hand back.
    void adoptHandles(const CommandResult& result);

    /// Sends a command that is no part of a render, as a part of `operation`.
    [[nodiscard]] CommandResult send(Operation& operation, Invocation invocation);

    void requireOpen() const; ///< throws HostError

    /// Throws HostError as Session::render says.
    void checkRender(A_long width, A_long height, const RenderRequest& request) const;
    RenderResult renderLayers(const LayerPicture& input, const LayerPicture& output,
                              const RenderRequest& request);

    mutable std::mutex mutex; ///< guards what follows
    EffectHandles handles;

private:
    void adopt(PF_Handle& kept, PF_Handle given, bool ended);
};

} // namespace kovalune::host
