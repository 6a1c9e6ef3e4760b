// What a soak does again and again, each time another way: frames, alone and two at once, cancelled ones, host calls that fail,
// boundary smoothing, sequences with a damaged file. Everything is made a second time by other means and compared.
#pragma once

#include "host/EffectModule.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace kovalune::test {

struct TurnResult {
    int frames = 0;
    std::string fault; ///< empty: everything was as it has to be
};

/// The same for the same seed. `folder` is empty, and is so again afterwards.
TurnResult runTurn(uint64_t seed, host::EffectModule& module, const std::filesystem::path& folder);

} // namespace kovalune::test
