// The host's worlds: pixel memory behind PF_EffectWorld, laid out as the options say, registered by a tag in
// the struct so that copies of it are recognised too. Safe to use from several threads.
#pragma once

#include "host/MemoryPool.h"
#include "host/Options.h"
#include "hostapi/HostApi.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace kovalune::host {

class Ledger;

/// How many worlds of the effect are alive.
struct WorldBalance {
    int live = 0;
    int leftByFault = 0;
};

/// What the host knows of a world, whatever the struct says by now.
struct WorldInfo {
    PF_PixelFormat format;
    std::byte* data;
    std::size_t rowBytes;
    A_long width;
    A_long height;
};

struct WorldRequest {
    PF_PixelFormat format;
    A_long width;
    A_long height;
    bool clear = true; ///< transparent black; else undefined
    bool effectMade = false;
};

/// Whether the options let a world have this size; whether there is memory for it is another matter.
bool worldSizeAllowed(A_long width, A_long height, const HostOptions& options);

class WorldStore {
public:
    WorldStore(MemoryPool& pool, Ledger& ledger);
    ~WorldStore();
    WorldStore(const WorldStore&) = delete;
    WorldStore& operator=(const WorldStore&) = delete;

    /// Writes `world` only on success. BAD_CALLBACK_PARAM for a refused size, OUT_OF_MEMORY without memory.
    PF_Err make(const WorldRequest& request, const HostOptions& options, PF_EffectWorld& world);

    /// False, and no change, for what is no live world of that owner. Checks the guards first.
    bool dispose(const PF_EffectWorld& world, bool effectMade, const HostOptions& options);

    /// Keeps a world that the effect tried to give back while the host refused it from counting as a leak.
    void excuse(const PF_EffectWorld& world);

    std::optional<WorldInfo> find(const PF_EffectWorld* world) const;

    WorldBalance balance() const;

    /// One text per world whose guards or paddings are damaged at this moment.
    std::vector<std::string> findDamage() const;

private:
    struct Record;

    Record* locate(const PF_EffectWorld& world) const; ///< with mutex_ held

    MemoryPool& pool_;
    Ledger& ledger_;
    mutable std::mutex mutex_;
    std::unordered_map<const void*, std::unique_ptr<Record>> records_;
    A_long nextSerial_ = 1;
};

} // namespace kovalune::host
