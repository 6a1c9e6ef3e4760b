// What a layer over the host is told of an effect's manners, and where it takes part in operations. The host's
// own watch is blind: every function of this class does nothing, or what the interface says.
#pragma once

#include "host/Operation.h"

#include <memory>
#include <string>

namespace kovalune::host {

/// May be called by several threads at once. What is thrown here never gets into the effect.
class CallWatch {
public:
    CallWatch() = default;
    virtual ~CallWatch() = default;
    CallWatch(const CallWatch&) = delete;
    CallWatch& operator=(const CallWatch&) = delete;

    /// Of every set-up of a session, command and render.
    virtual std::unique_ptr<Operation> beginOperation(ProgressFunction onProgress) {
        return std::make_unique<Operation>(std::move(onProgress));
    }

    /// Whether `called` is to come, whose text takes time to make.
    virtual bool logsCalls() const { return false; }
    virtual void called(const char* /*call*/, const std::string& /*arguments*/) {}

    /// The effect did what the interface does not allow.
    virtual void misused(const std::string& /*text*/) {}

    /// A parameter was checked in that was not checked out, after a call of the operation had been refused.
    virtual void strayCheckin() {}

    /// What was still checked out when its command or frame ended; `refused` more are so because a check-in was refused.
    virtual void paramsLeftOut(int /*open*/, int /*refused*/) {}
    virtual void layersLeftOut(int /*open*/, int /*refused*/) {}
};

} // namespace kovalune::host
