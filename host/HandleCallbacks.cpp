#include "host/HandleCallbacks.h"

#include "host/CallbackSupport.h"

#include <limits>
#include <tuple>

namespace kovalune::host {

namespace {

bool fitsMemory(A_HandleSize size) {
    return size <= std::numeric_limits<std::size_t>::max() / 2;
}

/// A call that cannot fail but is logged; nothing happens outside of a command.
template <class Body>
void plainCall(const char* call, const Body& body) noexcept {
    shielded([&] {
        if (CommandContext* context = currentContext()) {
            logCall(*context, call, noArguments);
            body(context->host);
        }
    });
}

} // namespace

PF_Handle newHandle(A_HandleSize size) {
    PF_Handle handle = nullptr;
    // A refusal shows by the null.
    std::ignore = countedCall(
        "host_new_handle", [&] { return joined(size); },
        [&](CommandContext& context) -> PF_Err {
            if (fitsMemory(size)) {
                handle = context.host.handles.make(static_cast<std::size_t>(size), context.host.options);
            }
            return PF_Err_NONE;
        });
    return handle;
}

void* lockHandle(PF_Handle handle) {
    void* bytes = nullptr;
    std::ignore = countedCall("host_lock_handle", noArguments, [&](CommandContext& context) -> PF_Err {
        bytes = context.host.handles.lock(handle);
        return PF_Err_NONE;
    });
    return bytes;
}

void unlockHandle(PF_Handle handle) {
    plainCall("host_unlock_handle", [&](HostState& host) { host.handles.unlock(handle); });
}

void disposeHandle(PF_Handle handle) {
    plainCall("host_dispose_handle", [&](HostState& host) { host.handles.dispose(handle, host.options); });
}

A_HandleSize handleSize(PF_Handle handle) {
    A_HandleSize size = 0;
    plainCall("host_get_handle_size", [&](HostState& host) { size = host.handles.size(handle); });
    return size;
}

PF_Err resizeHandle(A_HandleSize size, PF_Handle* handle) {
    return countedCall(
        "host_resize_handle", [&] { return joined(size); },
        [&](CommandContext& context) -> PF_Err {
            if (handle == nullptr) {
                return PF_Err_BAD_CALLBACK_PARAM;
            }
            if (!fitsMemory(size)) {
                return PF_Err_OUT_OF_MEMORY;
            }
            return context.host.handles.resize(*handle, static_cast<std::size_t>(size), context.host.options);
        });
}

} // namespace kovalune::host
