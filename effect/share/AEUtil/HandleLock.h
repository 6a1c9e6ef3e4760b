// Scope objects for host handles that come from the utility callbacks. A handle may arrive locked or
// unlocked, so locks and unlocks are made in pairs and nothing is assumed.
#pragma once

#include "hostapi/HostApi.h"

namespace AEUtil {

/// Locks a handle for a scope.
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
