// Pictures and pixels as parts of a JSON document. Floats have the shortest digits that read back as the same float; what
// is no number, as NaN, is its text.
#pragma once

#include "pictures/Picture.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>

namespace kovalune::cli {

/// Width, height, channels, samples, alpha.
nlohmann::ordered_json formJson(const pictures::Picture& picture);

/// As the file holds it: by the channels' names.
nlohmann::ordered_json pixelJson(const pictures::Picture& picture, std::size_t pixel);

nlohmann::ordered_json numberJson(float number);
nlohmann::ordered_json numberJson(double number);

} // namespace kovalune::cli
