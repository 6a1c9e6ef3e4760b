// The golden scenes on the machine at hand, against the hashes that they had when this was built.
#pragma once

#include "host/EffectModule.h"
#include "host/Host.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kovalune::selfcheck {

/// tests/golden/hashes.txt without its remarks: a line a scene, its hash before its text.
std::span<const std::string_view> goldenLines();

/// As `every`: a second on a machine of today.
inline constexpr int kQuickStep = 4;

struct CheckRequest {
    int every = 1;            ///< each so many-th scene, from the first on
    bool toTheEnd = false;    ///< beyond the first difference too
    bool framesAlone = false; ///< boundary smoothing by itself is for the effect that is linked in
};

/// What came out otherwise.
struct Difference {
    std::string scene;
    std::string expected; ///< hash
    std::string found;    ///< a hash, a code or what was thrown
};

struct CheckOutcome {
    std::size_t scenes = 0;      ///< that were rendered
    std::size_t differences = 0; ///< of them
    std::optional<Difference> first;
};

/// No remembered defaults may count.
CheckOutcome checkScenes(host::EffectModule& module, host::Host& host, const CheckRequest& request);

} // namespace kovalune::selfcheck
