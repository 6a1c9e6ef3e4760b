// Settings proposed for a drawing from its colours alone: of one picture, or of the frames of a shot, which are given one
// after the other and not kept.
#pragma once

#include "pictures/Picture.h"
#include "pictures/regions/ShotColors.h"
#include "render/suggest/SuggestedPasses.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kovalune::suggest {

struct Suggestion {
    std::vector<pictures::ColorRegion> regions; ///< colours in 8 bits, the larger ones first
    std::vector<pictures::ColorPair> pairs;     ///< none: there is nothing to propose
    std::vector<SuggestedPass> passes;
    std::string settings; ///< the text of a file, where there are passes
};

class SuggestionFigures {
public:
    /// Colours count by the nearest one in 8 bits, as settings name them. Each frame comes once.
    void add(const pictures::Picture& picture, int64_t frame);

    /// `name` is that of the picture or of the shot, for the settings' first remark.
    Suggestion suggestion(const std::string& name, const pictures::PairRules& rules = {}) const;

private:
    pictures::ShotColors colors_;
    std::size_t frames_ = 0;
};

} // namespace kovalune::suggest
