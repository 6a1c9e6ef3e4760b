#include "host/judge/GuardedMemory.h"

#include "host/Image.h"
#include "host/judge/GuardBytes.h"

#include <utility>

namespace kovalune::host::judge {

namespace {

constexpr std::size_t kGuardBytes = 64;

std::size_t frontBytes(const MemoryBlock& block) {
    return static_cast<std::size_t>(block.payload - block.base);
}

void openGuards(const MemoryBlock& block) {
    openMemory(block.base, frontBytes(block));
    openMemory(block.payload + block.payloadBytes, kGuardBytes);
}

void closeGuards(const MemoryBlock& block) {
    closeMemory(block.base, frontBytes(block));
    closeMemory(block.payload + block.payloadBytes, kGuardBytes);
}

bool guardsIntact(const MemoryBlock& block) {
    if (!block.guarded) {
        return true;
    }
    openGuards(block);
    const bool intact = bytesIntact(block.base, frontBytes(block), kGuardByte) &&
                        bytesIntact(block.payload + block.payloadBytes, kGuardBytes, kGuardByte);
    closeGuards(block);
    return intact;
}

/// Where the pixels of row `y` end.
std::byte* rowEnd(const WorldMemory& world, A_long y) {
    return world.info.data + y * world.info.rowBytes + world.pixelBytes;
}

std::vector<std::byte> pixelsOf(const WorldInfo& world) {
    const std::size_t rowBytes = static_cast<std::size_t>(world.width) * bytesPerPixel(world.format);
    std::vector<std::byte> pixels;
    pixels.reserve(rowBytes * static_cast<std::size_t>(world.height));
    for (A_long y = 0; y < world.height; ++y) {
        const std::byte* const row = world.data + y * world.rowBytes;
        pixels.insert(pixels.end(), row, row + rowBytes);
    }
    return pixels;
}

} // namespace

GuardedMemory::~GuardedMemory() {
    for (const std::unique_ptr<void*>& place : deadHandles_) {
        openMemory(place.get(), sizeof *place);
    }
}

MemoryBlock GuardedMemory::take(MemoryPool& pool, std::size_t bytes, const BlockPolicy& policy) {
    if (!options_.audit) {
        return MemoryWatch::take(pool, bytes, policy);
    }
    BlockPolicy guarded = policy;
    guarded.dataOffset += kGuardBytes;
    guarded.tailBytes += kGuardBytes;
    guarded.fresh = true;
    MemoryBlock block = pool.take(bytes, guarded);
    if (block.payload == nullptr) {
        return block;
    }
    block.guarded = true;
    fillBytes(block.base, frontBytes(block), kGuardByte);
    fillBytes(block.payload + bytes, kGuardBytes, kGuardByte);
    closeGuards(block);
    return block;
}

void GuardedMemory::give(MemoryPool& pool, const MemoryBlock& block, const BlockPolicy& policy) {
    if (block.guarded) {
        openGuards(block);
    }
    BlockPolicy last = policy;
    last.fresh = block.guarded || options_.audit;
    pool.give(block, last);
}

void GuardedMemory::handleGrown(std::byte* bytes, std::size_t count) {
    if (options_.poisonNewWorlds) {
        fillBytes(bytes, count, std::byte{options_.poison});
    }
}

void GuardedMemory::handleGoes(const MemoryBlock& block) {
    if (std::string damage = damageOf(block); !damage.empty()) {
        ledger_.addGuardDamage(std::move(damage));
    }
}

// From here on the place only keeps its address from being given out again.
void GuardedMemory::handleGone(std::unique_ptr<void*> place) {
    if (!options_.audit) {
        return;
    }
    const std::lock_guard lock(mutex_);
    deadHandles_.push_back(std::move(place));
    *deadHandles_.back() = nullptr;
    closeMemory(deadHandles_.back().get(), sizeof(void*));
}

std::size_t GuardedMemory::rowGuardBytes() const {
    return options_.audit ? static_cast<std::size_t>(options_.rowGuard) : 0;
}

void GuardedMemory::worldMade(const WorldMemory& world, bool cleared) {
    if (!cleared && options_.poisonNewWorlds) {
        fillBytes(world.block.payload, world.block.payloadBytes, std::byte{options_.poison});
    }
    for (A_long y = 0; world.block.guarded && y < world.info.height; ++y) {
        fillBytes(rowEnd(world, y), world.paddingBytes, kPaddingByte);
        fillBytes(rowEnd(world, y) + world.paddingBytes, world.guardBytes, kGuardByte);
    }
}

void GuardedMemory::worldGoes(const WorldMemory& world) {
    if (std::string damage = damageOf(world); !damage.empty()) {
        ledger_.addGuardDamage(std::move(damage));
    }
}

void GuardedMemory::inputLent(const void* tag, const WorldInfo& world) {
    if (options_.audit) {
        std::vector<std::byte> pixels = pixelsOf(world);
        const std::lock_guard lock(mutex_);
        lent_[tag] = std::move(pixels);
    }
}

void GuardedMemory::inputBack(const void* tag, const WorldInfo& world) {
    const std::lock_guard lock(mutex_);
    const auto found = lent_.find(tag);
    if (found == lent_.end()) {
        return;
    }
    if (found->second != pixelsOf(world)) {
        ledger_.addGuardDamage("the input's pixels were written");
    }
    lent_.erase(found);
}

std::string GuardedMemory::damageOf(const MemoryBlock& handle) {
    return guardsIntact(handle)
               ? std::string()
               : "handle of " + std::to_string(handle.payloadBytes) + " bytes: written outside its bytes";
}

std::string GuardedMemory::damageOf(const WorldMemory& world) {
    const std::string name =
        "world " + std::to_string(world.info.width) + "x" + std::to_string(world.info.height);
    if (!guardsIntact(world.block)) {
        return name + ": written outside its rows";
    }
    for (A_long y = 0; world.block.guarded && y < world.info.height; ++y) {
        if (!bytesIntact(rowEnd(world, y), world.paddingBytes, kPaddingByte) ||
            !bytesIntact(rowEnd(world, y) + world.paddingBytes, world.guardBytes, kGuardByte)) {
            return name + ": written behind row " + std::to_string(y);
        }
    }
    return {};
}

} // namespace kovalune::host::judge
