// What a picture's colours have been through.
#pragma once

namespace kovalune::samples {

/// Whether colours have been multiplied by alpha.
enum class AlphaKind { kStraight, kPremultiplied };

} // namespace kovalune::samples
