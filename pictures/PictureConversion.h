// Between a picture of a file and one of the host, which has straight alpha and works on 8, 16 or 32 bits.
//
// Whole numbers go from one white to another with rounding to the nearest, halves up: 16-bit samples as
// (v * 32768 + 32767) / 65535 on the way in and (v * 65535 + 16384) / 32768 on the way out. Floats of the file are
// those of the host. Where floats become whole numbers they are cut to 0 to white first; NaN becomes 0.
// Colours of premultiplied files are divided by alpha on the way in and multiplied on the way out. Under alpha 0
// they are taken as they stand on the way in; under a negative alpha or NaN, on both ways.
// Colours of linear light go through the sRGB curve on the way in and back on the way out, straight and in double.
#pragma once

#include "host/Image.h"
#include "pictures/Picture.h"

namespace kovalune::pictures {

/// PF_PixelFormat_ARGB32, ARGB64 or ARGB128: the host's format that holds samples of this type best.
PF_PixelFormat workingFormat(SampleType type);

/// The type of a file that holds the host's format best: Uint8, Uint16, or for ARGB128 `source` if that is a
/// float type, else Float.
SampleType sampleTypeFor(PF_PixelFormat format, SampleType source);

/// In the host's `format`. A picture without alpha is opaque; grey is spread over the three colours.
host::Image imageOf(const Picture& picture, PF_PixelFormat format);

struct PictureForm {
    SampleType sampleType = SampleType::kUint8;
    AlphaKind alphaKind = AlphaKind::kStraight;
    bool isLinear = false;
};

/// The picture to write for `result`, where `image` is imageOf(`source`, the format of `result`). A sample that is the
/// same in `result` as in `image` (with its alpha too, where either file is premultiplied) is taken from the
/// file, exactly where the form is the source's, though several file values share one of the host's.
/// The notes, but for embedded settings, and what is passed on beside them are the source's, and so are its channels as far as they can hold the result: alpha is added where
/// it is no longer full everywhere, and grey becomes RGB where a pixel is not grey.
Picture pictureOf(const host::Image& result, const host::Image& image, const Picture& source,
                  const PictureForm& form);

/// A picture with the colours that the effect sees, but not rounded to what it works in: straight floats, and where the
/// picture is linear light, through the curve.
Picture displayed(const Picture& picture);

} // namespace kovalune::pictures
