#include "host/Worlds.h"

#include "host/Guard.h"
#include "host/Image.h"
#include "host/Ledger.h"
#include "host/Rects.h"

#include <limits>
#include <utility>

namespace kovalune::host {

namespace {

constexpr A_long kLargestSide = PF_MAX_WORLD_WIDTH;

BlockPolicy blockPolicy(const HostOptions& options) {
    return {options.audit, static_cast<std::size_t>(options.dataOffset), options.poolCapBytes};
}

} // namespace

bool worldSizeAllowed(A_long width, A_long height, const HostOptions& options) {
    const A_long smallest = options.allowEmpty ? 0 : 1;
    const A_long largest = options.allowHuge ? std::numeric_limits<A_long>::max() : kLargestSide;
    return width >= smallest && height >= smallest && width <= largest && height <= largest;
}

struct WorldStore::Record {
    WorldInfo info{};
    MemoryBlock block;
    std::size_t pixelBytes = 0;   ///< of a row
    std::size_t paddingBytes = 0; ///< of a row, watched
    std::size_t guardBytes = 0;   ///< of a row, behind the padding
    A_long serial = 0;
    bool effectMade = false;
    bool leftByFault = false;

    void fillRowEnds();
    std::string damage() const; ///< empty: none
};

void WorldStore::Record::fillRowEnds() {
    for (A_long y = 0; y < info.height; ++y) {
        std::byte* padding = info.data + static_cast<std::size_t>(y) * info.rowBytes + pixelBytes;
        fillBytes(padding, paddingBytes, kPaddingByte);
        fillBytes(padding + paddingBytes, guardBytes, kGuardByte);
    }
}

std::string WorldStore::Record::damage() const {
    const std::string name = "world " + std::to_string(info.width) + "x" + std::to_string(info.height);
    if (!block.guardsIntact()) {
        return name + ": written outside its rows";
    }
    for (A_long y = 0; block.guarded && y < info.height; ++y) {
        const std::byte* padding = info.data + static_cast<std::size_t>(y) * info.rowBytes + pixelBytes;
        if (!bytesIntact(padding, paddingBytes, kPaddingByte) ||
            !bytesIntact(padding + paddingBytes, guardBytes, kGuardByte)) {
            return name + ": written behind row " + std::to_string(y);
        }
    }
    return {};
}

WorldStore::WorldStore(MemoryPool& pool, Ledger& ledger) : pool_(pool), ledger_(ledger) {}

WorldStore::~WorldStore() {
    for (const auto& [tag, record] : records_) {
        pool_.give(record->block, {});
    }
}

PF_Err WorldStore::make(const WorldRequest& request, const HostOptions& options, PF_EffectWorld& world) {
    if (!worldSizeAllowed(request.width, request.height, options)) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    auto record = std::make_unique<Record>();
    record->pixelBytes = static_cast<std::size_t>(request.width) * bytesPerPixel(request.format);
    record->paddingBytes = static_cast<std::size_t>(options.rowPadding);
    record->guardBytes = options.audit ? static_cast<std::size_t>(options.rowGuard) : 0;
    const std::size_t rowBytes = record->pixelBytes + record->paddingBytes + record->guardBytes;
    if (rowBytes > static_cast<std::size_t>(std::numeric_limits<A_long>::max()) ||
        (request.height > 0 &&
         rowBytes > std::numeric_limits<std::size_t>::max() / 4 / static_cast<std::size_t>(request.height))) {
        return PF_Err_OUT_OF_MEMORY;
    }
    const std::size_t bytes = rowBytes * static_cast<std::size_t>(request.height);
    record->block = pool_.take(bytes, blockPolicy(options));
    if (record->block.payload == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    record->info = {request.format, record->block.payload, rowBytes, request.width, request.height};
    record->effectMade = request.effectMade;
    if (request.clear) {
        fillBytes(record->block.payload, bytes, std::byte{0});
    } else if (options.poisonNewWorlds) {
        fillBytes(record->block.payload, bytes, kPoisonByte);
    }
    if (options.audit) {
        record->fillRowEnds();
    }

    PF_EffectWorld made{};
    made.world_flags = PF_WorldFlag_WRITEABLE;
    if (request.format == PF_PixelFormat_ARGB64) {
        made.world_flags |= PF_WorldFlag_DEEP;
    }
    made.data = static_cast<decltype(made.data)>(static_cast<void*>(record->info.data));
    made.rowbytes = static_cast<A_long>(rowBytes);
    made.width = request.width;
    made.height = request.height;
    made.extent_hint = wholeRect(request.width, request.height);
    made.pix_aspect_ratio = {1, 1};
    made.reserved_long4 = record.get();
    const std::lock_guard lock(mutex_);
    record->serial = nextSerial_;
    nextSerial_ = nextSerial_ == std::numeric_limits<A_long>::max() ? 1 : nextSerial_ + 1;
    made.reserved_long3 = record->serial;
    const void* tag = record.get();
    records_.emplace(tag, std::move(record));
    world = made;
    return PF_Err_NONE;
}

/// The serial number tells a live world from a stale struct whose record's address is in use again.
WorldStore::Record* WorldStore::locate(const PF_EffectWorld& world) const {
    const auto found = records_.find(world.reserved_long4);
    if (found == records_.end() || found->second->serial != world.reserved_long3) {
        return nullptr;
    }
    return found->second.get();
}

bool WorldStore::dispose(const PF_EffectWorld& world, bool effectMade, const HostOptions& options) {
    std::unique_ptr<Record> record;
    {
        const std::lock_guard lock(mutex_);
        Record* found = locate(world);
        if (found == nullptr || found->effectMade != effectMade) {
            return false;
        }
        auto node = records_.extract(found);
        if (node.empty()) {
            return false;
        }
        record = std::move(node.mapped());
    }
    if (std::string damage = record->damage(); !damage.empty()) {
        ledger_.addGuardDamage(std::move(damage));
    }
    pool_.give(record->block, blockPolicy(options));
    return true;
}

void WorldStore::excuse(const PF_EffectWorld& world) {
    const std::lock_guard lock(mutex_);
    if (Record* record = locate(world)) {
        record->leftByFault = true;
    }
}

std::optional<WorldInfo> WorldStore::find(const PF_EffectWorld* world) const {
    if (world == nullptr) {
        return std::nullopt;
    }
    const std::lock_guard lock(mutex_);
    const Record* record = locate(*world);
    if (record == nullptr) {
        return std::nullopt;
    }
    return record->info;
}

WorldBalance WorldStore::balance() const {
    const std::lock_guard lock(mutex_);
    WorldBalance result;
    for (const auto& [tag, record] : records_) {
        if (record->effectMade) {
            ++(record->leftByFault ? result.leftByFault : result.live);
        }
    }
    return result;
}

std::vector<std::string> WorldStore::findDamage() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> result;
    for (const auto& [tag, record] : records_) {
        if (std::string damage = record->damage(); !damage.empty()) {
            result.push_back(std::move(damage));
        }
    }
    return result;
}

} // namespace kovalune::host
