// The host's own worlds for the layers of a frame, in a picture's memory or filled from it: those of the one-step render,
// and what the two-step render uses underneath.
#pragma once

#include "host/ImageView.h"
#include "hostapi/HostApi.h"

namespace kovalune::host {

struct HostState;

/// A picture of a render's caller. The input's pixels are not written: the interface has no worlds to read only.
struct LayerPicture {
    ImageView pixels;
    bool inPlace = false; ///< the effect may get at the caller's memory itself
};

/// A world of the host's own with the picture's pixels at `place`, transparent black where there is no
/// picture. BAD_CALLBACK_PARAM for a size that no world has, OUT_OF_MEMORY without memory.
[[nodiscard]] PF_Err makeLayerWorld(HostState& host, const LayerPicture& picture, const PF_LRect& place,
                                    PF_EffectWorld& world);

/// The same for the input, whose pixels are not to change.
[[nodiscard]] PF_Err makeInputWorld(HostState& host, const LayerPicture& picture, const PF_LRect& place,
                                    PF_EffectWorld& world);

/// Turns a code of makeLayerWorld into what a render's caller gets: std::bad_alloc without memory, HostError
/// for a size that the caller's options led to.
void requireWorld(PF_Err code);

/// Gives an input world back.
void dropInputWorld(HostState& host, const PF_EffectWorld& world);

/// The part of an output world at `place` into the picture, where it does not lie there already.
void takeLayer(HostState& host, const PF_EffectWorld& world, const PF_LRect& place,
               const LayerPicture& picture);

/// The two worlds of the one-step render.
class LegacyWorlds {
public:
    /// Throws as requireWorld does.
    LegacyWorlds(HostState& host, const LayerPicture& input, const LayerPicture& output);
    LegacyWorlds(const LegacyWorlds&) = delete;
    LegacyWorlds& operator=(const LegacyWorlds&) = delete;
    ~LegacyWorlds() { drop(); }

    void takeOutput() const { takeLayer(host_, outputWorld, place_, output_); }

    PF_EffectWorld inputWorld{};
    PF_EffectWorld outputWorld{};

private:
    void make();
    void drop();

    HostState& host_;
    const LayerPicture input_;
    const LayerPicture output_;
    PF_LRect place_;
};

} // namespace kovalune::host
