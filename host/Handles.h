// The host's handle memory: blocks behind PF_Handle with lock counts. The address of a block is stable while
// it is locked, and in fact until it is resized or disposed of. Safe to use from several threads.
// With the audit on, no handle gets the address of an earlier one, so a stale one is noticed for good.
#pragma once

#include "host/MemoryPool.h"
#include "host/Options.h"
#include "hostapi/HostApi.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace kovalune::host {

class Ledger;

struct HandleBalance {
    int live = 0;  ///< without the host's own
    int locks = 0; ///< of all
};

class HandleStore {
public:
    HandleStore(MemoryPool& pool, Ledger& ledger);
    ~HandleStore();
    HandleStore(const HandleStore&) = delete;
    HandleStore& operator=(const HandleStore&) = delete;

    /// Null without memory.
    PF_Handle make(std::size_t bytes, const HostOptions& options);

    /// Wrong handles are booked as misuse; lock then gives null, size 0, resize BAD_CALLBACK_PARAM.
    void* lock(PF_Handle handle);
    void unlock(PF_Handle handle);
    void dispose(PF_Handle handle, const HostOptions& options);
    std::size_t size(PF_Handle handle) const;
    PF_Err resize(PF_Handle handle, std::size_t bytes, const HostOptions& options);

    bool isLive(PF_Handle handle) const;

    /// A handle in the host's own keeping is not counted as the effect's.
    void setHostOwned(PF_Handle handle, bool owned);

    /// The bytes of a live handle, for the host's own reading.
    std::vector<std::byte> contents(PF_Handle handle) const;

    HandleBalance balance() const;
    std::vector<std::string> findDamage() const;

private:
    struct Block;

    Block* locate(PF_Handle handle) const; ///< with mutex_ held
    void bookUnknown(const char* what) const;

    MemoryPool& pool_;
    Ledger& ledger_;
    mutable std::mutex mutex_;
    std::unordered_map<const void*, std::unique_ptr<Block>> blocks_;
    std::vector<std::unique_ptr<Block>> dead_; ///< disposed of under audit; their memory is gone already
};

} // namespace kovalune::host
