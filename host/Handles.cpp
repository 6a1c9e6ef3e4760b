#include "host/Handles.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace kovalune::host {

namespace {

BlockPolicy blockPolicy(const HostOptions& options) {
    return {.poolCapBytes = options.poolCapBytes};
}

} // namespace

HandleStore::HandleStore(MemoryPool& pool, MemoryWatch& memory, CallWatch& watch)
    : pool_(pool), memory_(memory), watch_(watch) {}

HandleStore::~HandleStore() {
    for (const auto& [key, block] : blocks_) {
        memory_.give(pool_, block.memory, {});
    }
}

HandleStore::Block* HandleStore::locate(PF_Handle handle) {
    const auto found = blocks_.find(handle);
    return found == blocks_.end() ? nullptr : &found->second;
}

const HandleStore::Block* HandleStore::locate(PF_Handle handle) const {
    const auto found = blocks_.find(handle);
    return found == blocks_.end() ? nullptr : &found->second;
}

void HandleStore::noteUnknown(const char* what) const {
    watch_.misused(std::string(what) + " of an unknown handle");
}

PF_Handle HandleStore::make(std::size_t bytes, const HostOptions& options) {
    Block block;
    block.place = std::make_unique<void*>(nullptr);
    block.memory = memory_.take(pool_, bytes, blockPolicy(options));
    if (block.memory.payload == nullptr) {
        return nullptr;
    }
    *block.place = block.memory.payload;
    memory_.handleGrown(block.memory.payload, bytes);
    const PF_Handle handle = block.place.get();
    const std::lock_guard lock(mutex_);
    blocks_.emplace(handle, std::move(block));
    return handle;
}

void* HandleStore::lock(PF_Handle handle) {
    const std::lock_guard guard(mutex_);
    Block* block = locate(handle);
    if (block == nullptr) {
        noteUnknown("lock");
        return nullptr;
    }
    ++block->locks;
    return block->memory.payload;
}

void HandleStore::unlock(PF_Handle handle) {
    const std::lock_guard guard(mutex_);
    Block* block = locate(handle);
    if (block == nullptr) {
        noteUnknown("unlock");
    } else if (block->locks == 0) {
        watch_.misused("unlock of a handle that is not locked");
    } else {
        --block->locks;
    }
}

void HandleStore::dispose(PF_Handle handle, const HostOptions& options) {
    const std::lock_guard guard(mutex_);
    Block* block = locate(handle);
    if (block == nullptr) {
        noteUnknown("dispose");
        return;
    }
    if (block->locks != 0) {
        watch_.misused("dispose of a locked handle");
    }
    memory_.handleGoes(block->memory);
    memory_.give(pool_, block->memory, blockPolicy(options));
    std::unique_ptr<void*> place = std::move(block->place);
    blocks_.erase(handle);
    memory_.handleGone(std::move(place));
}

std::size_t HandleStore::size(PF_Handle handle) const {
    const std::lock_guard guard(mutex_);
    const Block* block = locate(handle);
    if (block == nullptr) {
        noteUnknown("size");
        return 0;
    }
    return block->memory.payloadBytes;
}

PF_Err HandleStore::resize(PF_Handle handle, std::size_t bytes, const HostOptions& options) {
    const std::lock_guard guard(mutex_);
    Block* block = locate(handle);
    if (block == nullptr) {
        noteUnknown("resize");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (block->locks != 0) {
        watch_.misused("resize of a locked handle");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const MemoryBlock grown = memory_.take(pool_, bytes, blockPolicy(options));
    if (grown.payload == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    const std::size_t kept = std::min(bytes, block->memory.payloadBytes);
    if (kept != 0) {
        std::memcpy(grown.payload, block->memory.payload, kept);
    }
    memory_.handleGrown(grown.payload + kept, bytes - kept);
    memory_.handleGoes(block->memory);
    memory_.give(pool_, block->memory, blockPolicy(options));
    block->memory = grown;
    *block->place = grown.payload;
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
        result.live += block.hostOwned ? 0 : 1;
        result.locks += block.locks;
    }
    return result;
}

void HandleStore::forEach(const std::function<void(const MemoryBlock&)>& visit) const {
    const std::lock_guard guard(mutex_);
    for (const auto& [key, block] : blocks_) {
        visit(block.memory);
    }
}

} // namespace kovalune::host
