#include "host/Handles.h"

#include "host/Guard.h"
#include "host/Ledger.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kovalune::host {

namespace {

BlockPolicy blockPolicy(const HostOptions& options) {
    return {options.audit, 0, options.poolCapBytes};
}

std::string damageText(const MemoryBlock& block) {
    return "handle of " + std::to_string(block.payloadBytes) + " bytes: written outside its bytes";
}

} // namespace

/// `data` is what a PF_Handle points to.
struct HandleStore::Block {
    Block() = default;
    ~Block() { openMemory(&data, sizeof data); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    /// From here on the block only keeps its address from being given out again.
    void bury() {
        data = nullptr;
        closeMemory(&data, sizeof data);
    }

    void* data = nullptr;
    MemoryBlock memory;
    int locks = 0;
    bool hostOwned = false;
};

HandleStore::HandleStore(MemoryPool& pool, Ledger& ledger) : pool_(pool), ledger_(ledger) {}

HandleStore::~HandleStore() {
    for (const auto& [key, block] : blocks_) {
        pool_.give(block->memory, {});
    }
}

HandleStore::Block* HandleStore::locate(PF_Handle handle) const {
    const auto found = blocks_.find(handle);
    return found == blocks_.end() ? nullptr : found->second.get();
}

void HandleStore::bookUnknown(const char* what) const {
    ledger_.addMisuse(std::string(what) + " of an unknown handle");
}

PF_Handle HandleStore::make(std::size_t bytes, const HostOptions& options) {
    auto block = std::make_unique<Block>();
    block->memory = pool_.take(bytes, blockPolicy(options));
    if (block->memory.payload == nullptr) {
        return nullptr;
    }
    block->data = block->memory.payload;
    if (options.poisonNewWorlds) {
        fillBytes(block->memory.payload, bytes, kPoisonByte);
    }
    const PF_Handle handle = &block->data;
    const std::lock_guard lock(mutex_);
    blocks_.emplace(handle, std::move(block));
    return handle;
}

void* HandleStore::lock(PF_Handle handle) {
    const std::lock_guard guard(mutex_);
    Block* block = locate(handle);
    if (block == nullptr) {
        bookUnknown("lock");
        return nullptr;
    }
    ++block->locks;
    return block->data;
}

void HandleStore::unlock(PF_Handle handle) {
    const std::lock_guard guard(mutex_);
    Block* block = locate(handle);
    if (block == nullptr) {
        bookUnknown("unlock");
    } else if (block->locks == 0) {
        ledger_.addMisuse("unlock of a handle that is not locked");
    } else {
        --block->locks;
    }
}

void HandleStore::dispose(PF_Handle handle, const HostOptions& options) {
    const std::lock_guard guard(mutex_);
    Block* block = locate(handle);
    if (block == nullptr) {
        bookUnknown("dispose");
        return;
    }
    if (block->locks != 0) {
        ledger_.addMisuse("dispose of a locked handle");
    }
    if (!block->memory.guardsIntact()) {
        ledger_.addGuardDamage(damageText(block->memory));
    }
    if (options.audit) {
        dead_.emplace_back();
    }
    pool_.give(block->memory, blockPolicy(options));
    auto node = blocks_.extract(handle);
    if (options.audit) {
        block->bury();
        dead_.back() = std::move(node.mapped());
    }
}

std::size_t HandleStore::size(PF_Handle handle) const {
    const std::lock_guard guard(mutex_);
    const Block* block = locate(handle);
    if (block == nullptr) {
        bookUnknown("size");
        return 0;
    }
    return block->memory.payloadBytes;
}

PF_Err HandleStore::resize(PF_Handle handle, std::size_t bytes, const HostOptions& options) {
    const std::lock_guard guard(mutex_);
    Block* block = locate(handle);
    if (block == nullptr) {
        bookUnknown("resize");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (block->locks != 0) {
        ledger_.addMisuse("resize of a locked handle");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const MemoryBlock grown = pool_.take(bytes, blockPolicy(options));
    if (grown.payload == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    const std::size_t kept = std::min(bytes, block->memory.payloadBytes);
    if (kept != 0) {
        std::memcpy(grown.payload, block->memory.payload, kept);
    }
    if (options.poisonNewWorlds) {
        fillBytes(grown.payload + kept, bytes - kept, kPoisonByte);
    }
    if (!block->memory.guardsIntact()) {
        ledger_.addGuardDamage(damageText(block->memory));
    }
    pool_.give(block->memory, blockPolicy(options));
    block->memory = grown;
    block->data = grown.payload;
    return PF_Err_NONE;
}

bool HandleStore::isLive(PF_Handle handle) const {
    const std::lock_guard guard(mutex_);
    return locate(handle) != nullptr;
}

void HandleStore::setHostOwned(PF_Handle handle, bool owned) {
    const std::lock_guard guard(mutex_);
    if (Block* block = locate(handle)) {
        block->hostOwned = owned;
    }
}

std::vector<std::byte> HandleStore::contents(PF_Handle handle) const {
    const std::lock_guard guard(mutex_);
    const Block* block = locate(handle);
    if (block == nullptr) {
        return {};
    }
    return {block->memory.payload, block->memory.payload + block->memory.payloadBytes};
}

HandleBalance HandleStore::balance() const {
    const std::lock_guard guard(mutex_);
    HandleBalance result;
    for (const auto& [key, block] : blocks_) {
        result.live += block->hostOwned ? 0 : 1;
        result.locks += block->locks;
    }
    return result;
}

std::vector<std::string> HandleStore::findDamage() const {
    const std::lock_guard guard(mutex_);
    std::vector<std::string> result;
    for (const auto& [key, block] : blocks_) {
        if (!block->memory.guardsIntact()) {
            result.push_back(damageText(block->memory));
        }
    }
    return result;
}

} // namespace kovalune::host
