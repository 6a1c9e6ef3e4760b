// The host's own worlds for the layers of a frame, filled from pictures: those of the one-step render, and
// what the two-step render uses underneath.
#pragma once

#include "host/Image.h"
#include "hostapi/HostApi.h"

namespace kovalune::host {

struct HostState;

/// A world of the host's own with the picture's pixels at `place`, transparent black where there is no
/// picture. BAD_CALLBACK_PARAM for a size that no world has, OUT_OF_MEMORY without memory.
PF_Err makeLayerWorld(HostState& host, const Image& picture, const PF_LRect& place, PF_EffectWorld& world);

/// Turns a code of makeLayerWorld into what a render's caller gets: std::bad_alloc without memory, HostError
/// for a size that the caller's options led to.
void requireWorld(PF_Err code);

/// Gives an input world back, booking a change of its pixels where there is an audit.
void dropInputWorld(HostState& host, const Image& picture, const PF_LRect& place,
                    const PF_EffectWorld& world);

/// The two worlds of the one-step render.
class LegacyWorlds {
public:
    /// Throws as requireWorld does.
    LegacyWorlds(HostState& host, const Image& input, const Image& output);
    LegacyWorlds(const LegacyWorlds&) = delete;
    LegacyWorlds& operator=(const LegacyWorlds&) = delete;
    ~LegacyWorlds() { drop(); }

    void takeOutput(Image& output) const;

    PF_EffectWorld inputWorld{};
    PF_EffectWorld outputWorld{};

private:
    void make(const Image& output);
    void drop();

    HostState& host_;
    const Image& input_;
    PF_LRect place_;
};

} // namespace kovalune::host
