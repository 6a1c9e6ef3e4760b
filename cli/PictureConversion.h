// Between a picture of a file and one of the host. 8-bit samples are the same in both; 16-bit samples go
// from a white of 65535 to one of 32768 and back.
#pragma once

#include "cli/Picture.h"
#include "host/Image.h"

namespace kovalune {

// `argb` or `ae16` by the picture's depth. A picture without alpha is opaque.
host::Image imageOf(const Picture& picture);

// The picture to write for `result`, where `image` is imageOf(`source`). A sample that is the same in
// `result` as in `image` keeps the file's value exactly, though several file values share one of the host's.
// The depth and the notes are the source's, and so are its channels as far as they can hold the result:
// alpha is added where it is no longer full everywhere, and grey becomes RGB where a pixel is not grey.
Picture pictureOf(const host::Image& result, const host::Image& image, const Picture& source);

} // namespace kovalune
