// The texts of a PNG file: titles, authors, comments and what programs write down there, each under a keyword.
#pragma once

#include "pictures/Picture.h"

#include <array>
#include <string>

namespace kovalune::pictures {

/// The chunks that hold them.
inline constexpr std::array<const char*, 3> kPngTexts = {"tEXt", "zTXt", "iTXt"};

/// Tells of a PNG's texts by their keywords, such as "texts (Title, Author)"; empty where the picture has none but embedded
/// settings.
std::string pngTextsNamed(const Picture& picture);

} // namespace kovalune::pictures
