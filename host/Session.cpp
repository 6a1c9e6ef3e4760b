#include "host/Session.h"

#include "host/SessionState.h"

#include <cstring>
#include <utility>

namespace kovalune::host {

/// The host takes over whatever handle the effect left, also after an error, since nobody else would free it.
/// A replaced handle that the effect left alone is the host's to dispose of.
void Session::State::adopt(PF_Handle& kept, PF_Handle given, bool ended) {
    const PF_Handle old = kept;
    if (given != nullptr && !host.handles.isLive(given)) {
        if (given != old) {
            host.watch.misused("data handed to the host that is no handle");
        }
        given = nullptr;
    }
    kept = ended ? nullptr : given;
    if (given != nullptr) {
        host.handles.setHostOwned(given, !ended);
    }
    if (old == nullptr || old == given || !host.handles.isLive(old)) {
        return;
    }
    if (given != nullptr) {
        host.handles.dispose(old, host.options);
    } else {
        host.handles.setHostOwned(old, false);
    }
}

EffectHandles Session::State::currentHandles() const {
    const std::lock_guard lock(mutex);
    return handles;
}

void Session::State::adoptHandles(const CommandResult& result) {
    const std::lock_guard lock(mutex);
    switch (result.command) {
    case PF_Cmd_GLOBAL_SETUP:
    case PF_Cmd_GLOBAL_SETDOWN:
        adopt(handles.global, result.out.global_data, result.command == PF_Cmd_GLOBAL_SETDOWN);
        break;
    case PF_Cmd_SEQUENCE_SETUP:
    case PF_Cmd_SEQUENCE_RESETUP:
    case PF_Cmd_SEQUENCE_FLATTEN:
    case PF_Cmd_SEQUENCE_SETDOWN:
        adopt(handles.sequence, result.out.sequence_data, result.command == PF_Cmd_SEQUENCE_SETDOWN);
        break;
    case PF_Cmd_FRAME_SETUP:
    case PF_Cmd_FRAME_SETDOWN:
        adopt(handles.frame, result.out.frame_data, result.command == PF_Cmd_FRAME_SETDOWN);
        break;
    default:
        break;
    }
}

CommandResult Session::State::send(Operation& operation, Invocation invocation) {
    invocation.handles = currentHandles();
    invocation.quality = host.options.quality;
    CommandResult result = sendCommand(target(), operation, invocation);
    adoptHandles(result);
    return result;
}

void Session::State::requireOpen() const {
    if (closed) {
        throw HostError("the session is closed");
    }
}

Session::Session(Host& host, EffectModule& module) : state_(std::make_unique<State>(host.state(), module)) {
    state_->host.checkOptions();
    const std::unique_ptr<Operation> operation = state_->host.watch.beginOperation({});
    Invocation invocation;
    invocation.command = PF_Cmd_GLOBAL_SETUP;
    state_->setup = state_->send(*operation, invocation);
    if (state_->setup.ok()) {
        state_->globalUp = true;
        state_->effectVersion = state_->setup.out.my_version;
        state_->outFlags = state_->setup.out.out_flags;
        state_->outFlags2 = state_->setup.out.out_flags2;
        invocation.command = PF_Cmd_PARAMS_SETUP;
        state_->setup = state_->send(*operation, invocation);
        if (state_->setup.ok() && state_->setup.out.num_params != state_->params.size()) {
            state_->host.watch.misused("num_params is not the number of registered parameters");
        }
    }
}

Session::~Session() {
    try {
        close();
    } catch (...) {
        // Nothing can be told from here; what is left alive shows in the audit.
        return;
    }
}

CommandResult Session::close() {
    if (state_->closed) {
        return {};
    }
    CommandResult result;
    if (sequenceData() != nullptr) {
        result = run(PF_Cmd_SEQUENCE_SETDOWN);
    }
    if (state_->globalUp && state_->module.setDown() == SetDown::kWithSession) {
        result = run(PF_Cmd_GLOBAL_SETDOWN);
    }
    state_->closed = true;
    return result;
}

CommandResult Session::run(PF_Cmd command, void* extra, const CommandHook& prepare, A_long time) {
    state_->requireOpen();
    state_->host.checkOptions();
    const std::unique_ptr<Operation> operation = state_->host.watch.beginOperation({});
    Invocation invocation;
    invocation.command = command;
    invocation.extra = extra;
    invocation.prepare = prepare;
    invocation.time = time;
    CommandResult result = state_->send(*operation, std::move(invocation));
    return result;
}

const CommandResult& Session::setupResult() const {
    return state_->setup;
}
A_u_long Session::effectVersion() const {
    return state_->effectVersion;
}
A_long Session::outFlags() const {
    return state_->outFlags;
}
A_long Session::outFlags2() const {
    return state_->outFlags2;
}

PF_Handle Session::sequenceData() const {
    return state_->currentHandles().sequence;
}

std::vector<std::byte> Session::sequenceBytes() const {
    return state_->host.handles.contents(sequenceData());
}

void Session::setSequenceBytes(const std::vector<std::byte>& bytes) {
    state_->requireOpen();
    state_->host.checkOptions();
    HandleStore& handles = state_->host.handles;
    PF_Handle made = nullptr;
    if (!bytes.empty()) {
        made = handles.make(bytes.size(), state_->host.options);
        if (made == nullptr) {
            throw HostError("no memory for sequence data");
        }
        std::memcpy(handles.lock(made), bytes.data(), bytes.size());
        handles.unlock(made);
        handles.setHostOwned(made, true);
    }
    const std::lock_guard lock(state_->mutex);
    if (state_->handles.sequence != nullptr) {
        handles.dispose(state_->handles.sequence, state_->host.options);
    }
    state_->handles.sequence = made;
}

const std::vector<PF_ParamDef>& Session::params() const {
    return state_->params.definitions();
}

std::vector<PF_ParamDef> Session::paramsWithValues(A_long time) const {
    return state_->params.definitionsAt(time);
}

std::optional<int> Session::findParam(const std::string& name) const {
    const std::vector<PF_ParamDef>& all = params();
    for (std::size_t index = 1; index < all.size(); ++index) {
        if (name == all[index].name) {
            return static_cast<int>(index);
        }
    }
    return std::nullopt;
}

std::optional<int> Session::findParamById(A_long id) const {
    const std::vector<PF_ParamDef>& all = params();
    for (std::size_t index = 1; index < all.size(); ++index) {
        if (id == all[index].uu.id) {
            return static_cast<int>(index);
        }
    }
    return std::nullopt;
}

std::vector<std::string> Session::choices(int index) const {
    const std::vector<PF_ParamDef>& all = params();
    if (index < 0 || static_cast<std::size_t>(index) >= all.size()) {
        throw HostError("no parameter " + std::to_string(index));
    }
    const PF_ParamDef& def = all[static_cast<std::size_t>(index)];
    std::vector<std::string> result;
    if (def.param_type != PF_Param_POPUP || def.u.pd.u.namesptr == nullptr) {
        return result;
    }
    result.emplace_back();
    for (const A_char* letter = def.u.pd.u.namesptr; *letter != '\0'; ++letter) {
        if (*letter == '|') {
            result.emplace_back();
        } else {
            result.back() += *letter;
        }
    }
    return result;
}

A_long Session::uiFlags(int index) const {
    return state_->params.uiFlags(index);
}

void Session::setValue(int index, ParamValue value) {
    state_->params.setValue(index, value);
}

void Session::setKey(int index, A_long time, ParamValue value) {
    state_->params.setKey(index, time, value);
}

ParamValue Session::value(int index, A_long time) const {
    return state_->params.value(index, time);
}

ParamValue Session::defaultValue(int index) const {
    return state_->params.defaultValue(index);
}

} // namespace kovalune::host
