// The owners of the host's scratch worlds: a counted pointer for the worlds of a frame, whose count is a plain integer since
// a pointer stays within one render, and a world for the length of one call.
#pragma once

#include "effect/share/AEUtil/Roomy.h"
#include "effect/share/HostCode.h"
#include "hostapi/HostApi.h"

#include <cstdint>
#include <utility>

namespace AEUtil {

/// Keeps a scratch world and what it takes to dispose of it.
struct WorldHolder {
    const SPBasicSuite* basic = nullptr;
    PF_ProgPtr effectRef = nullptr;
    Roomy<PF_EffectWorld> world;
    int32_t count = 1;
};

/// Owning pointer to a scratch world. `get` gives null as long as no world exists; users test it.
class EffectWorldPtr {
public:
    EffectWorldPtr() = default;
    EffectWorldPtr(const EffectWorldPtr& other);
    EffectWorldPtr(EffectWorldPtr&& other) noexcept
        : holder_(std::exchange(other.holder_, nullptr)), world_(std::exchange(other.world_, nullptr)) {}
    EffectWorldPtr& operator=(EffectWorldPtr other) noexcept {
        std::swap(holder_, other.holder_);
        std::swap(world_, other.world_);
        return *this;
    }
    ~EffectWorldPtr() { release(); }

    /// The last pointer's release disposes of the world; the host's answer is not looked at.
    void release() noexcept;

    PF_EffectWorld* get() const { return world_; }

private:
    friend class WorldSuite;

    WorldHolder* holder_ = nullptr;
    PF_EffectWorld* world_ = nullptr;
};

class WorldSuite {
public:
    /// A new world; its pixels are undefined where `clearPixels` is 0. The pointer stays empty, without an
    /// error, where there is no memory for the holder, and for `ae32` on a host that has only the old world
    /// suite. Throws `AEException` with the code of a host call that failed, `kMissingSuite` where no world
    /// suite exists at all.
    static EffectWorldPtr newWorld(PF_InData* inData, A_long width, A_long height, char clearPixels,
                                   PF_PixelFormat pixelFormat);
};

/// A world of the first version of the world suite, on the stack: one that the caller holds and asks nobody else for. Its
/// bytes, four a pixel, are undefined. The host's answer to its disposal is not looked at.
class ScopedWorld {
public:
    /// `suite` outlives it.
    ScopedWorld(const PFWorldSuite1& suite, PF_ProgPtr effectRef, A_long width, A_long height)
        : suite_(suite), effectRef_(effectRef),
          err_(suite.new_world(effectRef, width, height, PF_NewWorldFlag_NONE, &world_)) {}
    ~ScopedWorld() {
        if (err_ == PF_Err_NONE) {
            kovalune::ignored(suite_.dispose_world(effectRef_, &world_));
        }
    }
    ScopedWorld(const ScopedWorld&) = delete;
    ScopedWorld& operator=(const ScopedWorld&) = delete;

    /// The host's code; there is a world where it is 0.
    [[nodiscard]] PF_Err err() const { return err_; }
    const PF_EffectWorld& world() const { return world_; }

private:
    const PFWorldSuite1& suite_;
    PF_ProgPtr effectRef_;
    Roomy<PF_EffectWorld> world_;
    PF_Err err_;
};

} // namespace AEUtil
