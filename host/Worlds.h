// The host's worlds: pixel memory behind PF_EffectWorld, laid out as the options say or lent by the host's caller,
// registered by a tag in the struct so that copies of it are recognised too. Safe to use from several threads.
#pragma once

#include "host/HostManners.h"
#include "host/ImageView.h"
#include "host/MemoryWatch.h"
#include "host/Options.h"
#include "host/RowWork.h"
#include "hostapi/HostApi.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>

namespace kovalune::host {

/// How many worlds of the effect are alive.
struct WorldBalance {
    int live = 0;
    int refused = 0; ///< further ones: the effect gave them back, and the host refused it
};

struct WorldRequest {
    PF_PixelFormat format;
    A_long width;
    A_long height;
    bool clear = true; ///< transparent black; else undefined
    bool effectMade = false;
};

class WorldStore {
public:
    WorldStore(MemoryPool& pool, MemoryWatch& memory, const HostManners& manners, const RowWork& rowWork);
    ~WorldStore();
    WorldStore(const WorldStore&) = delete;
    WorldStore& operator=(const WorldStore&) = delete;

    /// Writes `world` only on success. BAD_CALLBACK_PARAM for a refused size, OUT_OF_MEMORY without memory.
    [[nodiscard]] PF_Err make(const WorldRequest& request, const HostOptions& options, PF_EffectWorld& world);

    /// The same for a world of the host's own on the pixels of a view, which stay where they are. The view must have
    /// passed checkView.
    [[nodiscard]] PF_Err lend(const ImageView& pixels, PF_EffectWorld& world);

    /// False, and no change, for what is no live world of that owner.
    bool dispose(const PF_EffectWorld& world, bool effectMade, const HostOptions& options);

    /// Keeps a world that the effect tried to give back while the host refused it from counting as a leak.
    void excuse(const PF_EffectWorld& world);

    std::optional<WorldInfo> find(const PF_EffectWorld* world) const;

    WorldBalance balance() const;
    void forEach(const std::function<void(const WorldMemory&)>& visit) const;

private:
    struct Record;

    Record* locate(const PF_EffectWorld& world) const; ///< with mutex_ held
    void enter(std::unique_ptr<Record> record, PF_EffectWorld& world);

    MemoryPool& pool_;
    MemoryWatch& memory_;
    const HostManners& manners_;
    const RowWork& rowWork_;
    mutable std::mutex mutex_;
    std::unordered_map<const void*, std::unique_ptr<Record>> records_;
    A_long nextSerial_ = 1;
};

} // namespace kovalune::host
