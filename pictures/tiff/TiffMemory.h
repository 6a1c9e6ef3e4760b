// A TIFF of the library in memory instead of a file. Errors and warnings go into the record, never to a stream,
// and no exception leaves through the library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <tiffio.h>
#include <vector>

namespace kovalune::pictures {

struct TiffMemory {
    std::span<const uint8_t> source; ///< what is read
    std::vector<uint8_t> target;     ///< what has been written
    uint64_t position = 0;
    bool ended = false;       ///< bytes past the end were asked for
    bool outOfMemory = false; ///< here or in the library
    char error[256] = {};     ///< the first since it was cleared, or ""
    char warning[256] = {};

    void clear() { ended = false, error[0] = 0, warning[0] = 0; }
};

struct CloseTiff {
    void operator()(TIFF* tiff) const noexcept { TIFFClose(tiff); }
};
using OpenTiff = std::unique_ptr<TIFF, CloseTiff>;

/// Null if it cannot be opened. `memory` must outlive it. The library takes no more than `mostBytes` at once.
OpenTiff openTiff(TiffMemory& memory, const char* mode, std::size_t mostBytes);

} // namespace kovalune::pictures
