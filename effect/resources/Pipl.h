// The property list by which a host finds the effect in its file, before it loads the code: the bytes of the
// `PiPL` resource, made from the constants that the code itself answers with.
#pragma once

#include <cstdint>
#include <vector>

namespace kovalune {

enum class PiplHost { kWindows32, kWindows64 };

std::vector<uint8_t> piplBytes(PiplHost host);

} // namespace kovalune
