// Settings for the pairs of colours that a picture has: which of them go into which pass and stage, and their text as a file of
// settings. A pass has four colours in Base and four Process stages; pairs that share a colour stay in one pass as far as
// they fit, since a pass finds its colours in what the one before it has left.
#pragma once

#include "pictures/regions/ColorPairs.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace kovalune::suggest {

/// A Process stage: one second over all its neighbours.
struct SuggestedStage {
    std::size_t second = 0;
    std::vector<pictures::ColorPair> pairs; ///< that have it
    double boundaryBlur = 0.0;              ///< pixels, in tenths
    /// Of the colours of Base and of the stages before it, it touches that of the one before alone.
    bool keepProcess = false;
};

struct SuggestedPass {
    std::vector<std::size_t> base; ///< neighbours that no stage before has as its second
    std::vector<SuggestedStage> stages;
};

/// All places are those of `regions`, in which the larger colours come first; there is no pass where there is no pair.
std::vector<SuggestedPass> suggestedPasses(std::span<const pictures::ColorRegion> regions,
                                           std::span<const pictures::ColorPair> pairs,
                                           const pictures::PairRules& rules = {});

/// Whether the second of a stage of the pass touches that of the stage before it, and no other colour that the pass has had by then.
bool liesInTheOneBefore(const SuggestedPass& pass, std::size_t stage,
                        std::span<const pictures::ColorRegion> regions);

/// What the settings were made of.
struct SuggestionSource {
    std::string name; ///< as remarks may have it: without line ends
    std::size_t frames = 1;
    pictures::SampleType type = pictures::SampleType::kUint8; ///< of the regions' colours
};

/// A file of settings, each line after a remark with the figures that it comes from. More passes than one are sections.
std::string suggestedText(std::span<const SuggestedPass> passes,
                          std::span<const pictures::ColorRegion> regions, const SuggestionSource& source,
                          const pictures::PairRules& rules = {});

} // namespace kovalune::suggest
