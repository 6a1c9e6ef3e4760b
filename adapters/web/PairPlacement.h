// A light and its shadow that somebody has pointed at, put into the settings of a pass: the light in Base, the shadow in the next
// free Process stage.
#pragma once

#include "host/Session.h"
#include "pictures/regions/ColorRegions.h"
#include "render/Settings.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace kovalune::web {

/// As "#RRGGBB". What had more than 8 bits may have been rounded twice, by way of the host's 16: it may be one off in a channel.
struct ColorsOfPair {
    std::string light;
    std::string shadow;
    bool areRounded = false;
};

/// Why two colours are no pair.
struct PairProblem {
    enum class Kind { kNoFlatColor, kSameColor, kNoBorder };
    Kind kind = Kind::kNoFlatColor;
    std::string color; ///< that the picture does not have, or both are; else the shadow
};

struct PairPlacement {
    /// What the settings are to say, by label; the rest stays.
    std::vector<std::pair<std::string, std::string>> values;
    std::size_t stage = 0;              ///< that has the shadow now; 0: none
    bool isFull = false;                ///< the pass has no place left for it
    std::optional<PairProblem> problem; ///< nothing is placed then
};

/// `session` has the values of the pass, of which the settings name `named`. A place is free that is switched off, or whose colour
/// the picture does not have. Amounts are those that a suggestion has for the pair.
PairPlacement placePair(const host::Session& session, const render::NamedParams& named,
                        std::span<const pictures::ColorRegion> regions, const ColorsOfPair& colors);

} // namespace kovalune::web
