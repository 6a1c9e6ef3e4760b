// The host's handle memory: blocks behind PF_Handle with lock counts. The address of a block is stable while
// it is locked, and in fact until it is resized or disposed of. Safe to use from several threads.
#pragma once

#include "host/CallWatch.h"
#include "host/MemoryWatch.h"
#include "host/Options.h"
#include "hostapi/HostApi.h"

#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace kovalune::host {

struct HandleBalance {
    int live = 0;  ///< without the host's own
    int locks = 0; ///< of all
};

class HandleStore {
public:
    HandleStore(MemoryPool& pool, MemoryWatch& memory, CallWatch& watch);
    ~HandleStore();
    HandleStore(const HandleStore&) = delete;
    HandleStore& operator=(const HandleStore&) = delete;

    /// Null without memory.
    [[nodiscard]] PF_Handle make(std::size_t bytes, const HostOptions& options);

    /// Wrong handles are a misuse; lock then gives null, size 0, resize BAD_CALLBACK_PARAM.
    void* lock(PF_Handle handle);
    void unlock(PF_Handle handle);
    void dispose(PF_Handle handle, const HostOptions& options);
    std::size_t size(PF_Handle handle) const;
    [[nodiscard]] PF_Err resize(PF_Handle handle, std::size_t bytes, const HostOptions& options);

    bool isLive(PF_Handle handle) const;

    /// A handle in the host's own keeping is not counted as the effect's.
    void setHostOwned(PF_Handle handle, bool owned);

    /// The bytes of a live handle, for the host's own reading.
    std::vector<std::byte> contents(PF_Handle handle) const;

    HandleBalance balance() const;
    void forEach(const std::function<void(const MemoryBlock&)>& visit) const;

private:
    struct Block {
        std::unique_ptr<void*> place; ///< what a PF_Handle points to
        MemoryBlock memory;
        int locks = 0;
        bool hostOwned = false;
    };

    Block* locate(PF_Handle handle);
    const Block* locate(PF_Handle handle) const; ///< with mutex_ held
    void noteUnknown(const char* what) const;

    MemoryPool& pool_;
    MemoryWatch& memory_;
    CallWatch& watch_;
    mutable std::mutex mutex_;
    std::unordered_map<const void*, Block> blocks_;
};

} // namespace kovalune::host
