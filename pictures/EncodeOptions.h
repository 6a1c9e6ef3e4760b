// What may be chosen of a file that is written. What it holds is the same with every choice but the compressions that
// lose something.
#pragma once

#include <string>

namespace kovalune::pictures {

inline constexpr int kHighestPngLevel = 9;

/// The smallest files of flat drawings among the levels that pack as quickly as any.
inline constexpr int kUsualPngLevel = 3;

/// Half as large, in three times the time; what is above it takes longer and gains little.
inline constexpr int kSmallPngLevel = 6;

struct EncodeOptions {
    int pngLevel = kUsualPngLevel; ///< how hard a PNG's samples are packed: 0 not at all, to kHighestPngLevel
    /// By name, one of the format's compressionsOf; empty: as the file that the picture was read from, where that was of this
    /// format and loses nothing, or else the format's usual one.
    std::string compression = {};
    /// A settings file's text to put into the picture's notes, in UTF-8; empty: none.
    std::string settings = {};
};

} // namespace kovalune::pictures
