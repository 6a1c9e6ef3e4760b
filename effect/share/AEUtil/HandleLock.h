// Scope objects for host handles. A handle may arrive locked or unlocked, so locks and unlocks are made in pairs and
// nothing is assumed.
#pragma once

#include "hostapi/HostApi.h"

#include <cstddef>
#include <cstdint>

namespace AEUtil {

/// A handle that the host was asked for, and its locked memory.
struct LockedHandle {
    enum class Lack : uint8_t { kNothing, kHandle, kLock };

    PF_Handle handle = nullptr;
    void* memory = nullptr;
    Lack lack = Lack::kHandle; ///< why the two are null
};

/// Asks for a handle and locks it. One that cannot be locked is disposed of again. `functions` are the utility callbacks
/// or the handle suite; who calls sees to the unlocking.
template <class Functions>
LockedHandle newLockedHandle(const Functions& functions, std::size_t bytes) {
    const PF_Handle handle = functions.host_new_handle(static_cast<A_HandleSize>(bytes));
    if (handle == nullptr) {
        return {};
    }
    void* const memory = functions.host_lock_handle(handle);
    if (memory == nullptr) {
        functions.host_dispose_handle(handle);
        return {.lack = LockedHandle::Lack::kLock};
    }
    return {handle, memory, LockedHandle::Lack::kNothing};
}

/// A new handle of the utility callbacks, locked for a scope. The handle itself is for the host to keep: whoever makes it
/// puts it where the host looks for it.
class NewHandle {
public:
    NewHandle(const PF_InData* inData, std::size_t bytes)
        : utils_(inData->utils), locked_(newLockedHandle(*utils_, bytes)) {}
    ~NewHandle() {
        if (memory() != nullptr) {
            utils_->host_unlock_handle(handle());
        }
    }
    NewHandle(const NewHandle&) = delete;
    NewHandle& operator=(const NewHandle&) = delete;

    /// 0 where there is a handle with memory. `noHandle` is the code for a host that made none.
    [[nodiscard]] PF_Err err(PF_Err noHandle = PF_Err_OUT_OF_MEMORY) const {
        switch (locked_.lack) {
        case LockedHandle::Lack::kHandle:
            return noHandle;
        case LockedHandle::Lack::kLock:
            return PF_Err_INTERNAL_STRUCT_DAMAGED;
        default:
            return PF_Err_NONE;
        }
    }

    PF_Handle handle() const { return locked_.handle; }
    void* memory() const { return locked_.memory; }

private:
    const PF_UtilCallbacks* utils_;
    LockedHandle locked_;
};

/// Locks a handle of the utility callbacks for a scope.
class HandleLock {
public:
    HandleLock(const PF_InData* inData, PF_Handle handle)
        : utils_(inData->utils), handle_(handle),
          memory_(handle != nullptr ? utils_->host_lock_handle(handle) : nullptr) {}
    ~HandleLock() {
        if (memory_ != nullptr) {
            utils_->host_unlock_handle(handle_);
        }
    }
    HandleLock(const HandleLock&) = delete;
    HandleLock& operator=(const HandleLock&) = delete;

    /// The handle's memory, or null for a null handle or one that cannot be locked.
    void* memory() const { return memory_; }

private:
    const PF_UtilCallbacks* utils_;
    PF_Handle handle_;
    void* memory_;
};

} // namespace AEUtil
