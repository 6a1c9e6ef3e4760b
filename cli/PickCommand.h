// `kovalune pick`: one pixel of a picture, as the file holds it and as the effect sees it.
#pragma once

#include "cli/Arguments.h"

#include <string>

namespace kovalune {

/// Lines of a title and a value. Hue, lightness and saturation are those by which the effect matches colours: of
/// the colour in 8 bits. Throws Failure.
std::string pickText(const PickArguments& arguments);

} // namespace kovalune
