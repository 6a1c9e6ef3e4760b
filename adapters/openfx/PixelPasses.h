// The way of pixels into the effect and back out: one pass in and one out, over all threads. The effect has the top row first
// and alpha first; hosts have the bottom row first and alpha last.
#pragma once

#include "adapters/openfx/ClipImage.h"
#include "host/Image.h"
#include "host/RowWork.h"
#include "render/FrameArea.h"

namespace kovalune::openfx {

/// The effect's format for this depth: full scale stays full scale.
PF_PixelFormat formatOf(Depth depth);

/// Fills `image`, of the source's size and of the format of its depth, with the source straight; linear light goes through the curve.
void takeIn(host::Image& image, const PixelBlock& source, bool isLinear, const host::RowWork& work);

/// What the effect has made of a source.
struct Rendered {
    const host::Image& result;
    const host::Image& image; ///< takeIn of the source
    const PixelBlock& source;
    bool isLinear = false;
};

/// Writes the window, which lies within the output's bounds: what the effect has left has the source's own bits where both are
/// alike, what it has changed is made of the result; transparent black outside of the source. Without alpha what is not opaque
/// lies over black.
void giveOut(const PixelBlock& output, const RectI& window, const Rendered& rendered,
             const host::RowWork& work);

/// Makes the window transparent black.
void clear(const PixelBlock& output, const RectI& window);

/// A picture of this place in the plane, inside where the mask is not 0. Throws ActionFailure for a mask without alpha.
render::FrameArea areaOf(const PixelBlock& mask, const RectI& bounds);

} // namespace kovalune::openfx
