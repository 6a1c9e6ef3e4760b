#include "host/Worlds.h"

#include "host/Image.h"
#include "host/Rects.h"
#include "host/WideStores.h"

#include <limits>
#include <utility>

namespace kovalune::host {

namespace {

BlockPolicy blockPolicy(const HostOptions& options) {
    return {.dataOffset = static_cast<std::size_t>(options.dataOffset), .poolCapBytes = options.poolCapBytes};
}

/// With all that comes from the host's record of the world but the two numbers by which it is found.
PF_EffectWorld worldStruct(const WorldInfo& info) {
    PF_EffectWorld world{};
    world.world_flags = PF_WorldFlag_WRITEABLE;
    if (info.format == PF_PixelFormat_ARGB64) {
        world.world_flags |= PF_WorldFlag_DEEP;
    }
    world.data = static_cast<decltype(world.data)>(static_cast<void*>(info.data));
    world.rowbytes = static_cast<A_long>(info.rowBytes);
    world.width = info.width;
    world.height = info.height;
    world.extent_hint = wholeRect(info.width, info.height);
    world.pix_aspect_ratio = {1, 1};
    return world;
}

} // namespace

struct WorldStore::Record {
    WorldMemory memory;
    A_long serial = 0;
    bool effectMade = false;
    bool refused = false;
};

WorldStore::WorldStore(MemoryPool& pool, MemoryWatch& memory, const HostManners& manners,
                       const RowWork& rowWork)
    : pool_(pool), memory_(memory), manners_(manners), rowWork_(rowWork) {}

WorldStore::~WorldStore() {
    for (const auto& [tag, record] : records_) {
        memory_.give(pool_, record->memory.block, {});
    }
}

PF_Err WorldStore::make(const WorldRequest& request, const HostOptions& options, PF_EffectWorld& world) {
    const SideLimits sides = manners_.sides();
    if (!sides.allow(request.width) || !sides.allow(request.height)) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    auto record = std::make_unique<Record>();
    WorldMemory& memory = record->memory;
    memory.pixelBytes = static_cast<std::size_t>(request.width) * bytesPerPixel(request.format);
    memory.paddingBytes = static_cast<std::size_t>(options.rowPadding);
    memory.guardBytes = memory_.rowGuardBytes();
    const std::size_t rowBytes = memory.pixelBytes + memory.paddingBytes + memory.guardBytes;
    if (rowBytes > static_cast<std::size_t>(std::numeric_limits<A_long>::max()) ||
        (request.height > 0 &&
         rowBytes > std::numeric_limits<std::size_t>::max() / 4 / static_cast<std::size_t>(request.height))) {
        return PF_Err_OUT_OF_MEMORY;
    }
    const std::size_t bytes = rowBytes * static_cast<std::size_t>(request.height);
    memory.block = memory_.take(pool_, bytes, blockPolicy(options));
    if (memory.block.payload == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    memory.info = {request.format, memory.block.payload, static_cast<std::ptrdiff_t>(rowBytes), request.width,
                   request.height};
    record->effectMade = request.effectMade;
    if (request.clear && !memory.block.zeros) {
        const ByteClear clear = clearFor(bytes);
        rowWork_.run(request.height, rowBytes, [&](A_long first, A_long end) {
            clear(memory.block.payload + static_cast<std::size_t>(first) * rowBytes,
                  static_cast<std::size_t>(end - first) * rowBytes);
        });
    }
    memory_.worldMade(memory, request.clear);
    enter(std::move(record), world);
    return PF_Err_NONE;
}

PF_Err WorldStore::lend(const ImageView& pixels, PF_EffectWorld& world) {
    const SideLimits sides = manners_.sides();
    if (!sides.allow(pixels.width) || !sides.allow(pixels.height)) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    auto record = std::make_unique<Record>();
    record->memory.info = {pixels.format, pixels.data, pixels.rowBytes, pixels.width, pixels.height, true};
    enter(std::move(record), world);
    return PF_Err_NONE;
}

void WorldStore::enter(std::unique_ptr<Record> record, PF_EffectWorld& world) {
    PF_EffectWorld made = worldStruct(record->memory.info);
    made.reserved_long4 = record.get();
    const std::lock_guard lock(mutex_);
    record->serial = nextSerial_;
    nextSerial_ = nextSerial_ == std::numeric_limits<A_long>::max() ? 1 : nextSerial_ + 1;
    made.reserved_long3 = record->serial;
    const void* tag = record.get();
    records_.emplace(tag, std::move(record));
    world = made;
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
    if (!record->memory.info.foreign) {
        memory_.worldGoes(record->memory);
        memory_.give(pool_, record->memory.block, blockPolicy(options));
    }
    return true;
}

void WorldStore::excuse(const PF_EffectWorld& world) {
    const std::lock_guard lock(mutex_);
    if (Record* record = locate(world)) {
        record->refused = true;
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
    return record->memory.info;
}

WorldBalance WorldStore::balance() const {
    const std::lock_guard lock(mutex_);
    WorldBalance result;
    for (const auto& [tag, record] : records_) {
        if (record->effectMade) {
            ++(record->refused ? result.refused : result.live);
        }
    }
    return result;
}

void WorldStore::forEach(const std::function<void(const WorldMemory&)>& visit) const {
    const std::lock_guard lock(mutex_);
    for (const auto& [tag, record] : records_) {
        visit(record->memory);
    }
}

} // namespace kovalune::host
