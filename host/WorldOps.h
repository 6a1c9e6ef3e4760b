// Copy and fill between worlds, and the way of pixels between worlds and pictures. All return when the last pixel is
// written, whatever threads had a part in it.
#pragma once

#include "host/ImageView.h"
#include "host/RowWork.h"
#include "host/WorldMemory.h"
#include "hostapi/HostApi.h"

namespace kovalune::host {

/// Null rectangles mean the whole world. Formats and the sizes of the rectangles must be equal, else
/// BAD_CALLBACK_PARAM; what lies outside of a world is left out. The worlds may be one and overlap.
[[nodiscard]] PF_Err copyPixels(const RowWork& work, const WorldInfo& from, const WorldInfo& to,
                                const PF_Rect* fromRect, const PF_Rect* toRect);

/// A null colour is transparent black, a null rectangle the whole world; the rectangle is clipped. Colours
/// are scaled to the world's white, rounded to nearest.
void fillPixels(const RowWork& work, const WorldInfo& world, const PF_Pixel* colour, const PF_Rect* rect);

/// The part of the picture at `place` into the world's upper left, where both exist.
void pictureToWorld(const RowWork& work, const ConstImageView& picture, const PF_LRect& place,
                    const WorldInfo& world);

/// The way back.
void worldToPicture(const RowWork& work, const WorldInfo& world, const PF_LRect& place,
                    const ImageView& picture);

} // namespace kovalune::host
