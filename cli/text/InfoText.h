// What `kovalune info` tells of the effect and of the build: as lines, or as JSON for programs.
#pragma once

#include "hostapi/Types.h"
#include "pictures/LibraryVersions.h"

#include <optional>
#include <string>
#include <vector>

namespace kovalune::cli {

struct EffectFacts {
    std::optional<std::string> plugin; ///< none: it is built in
    std::vector<std::string> about;    ///< lines
    A_u_long version = 0;              ///< packed, as hosts get it
    A_long outFlags = 0;
    A_long outFlags2 = 0;
    std::vector<int> depths; ///< bits a channel
    bool smartRender = false;
};

struct BuildFacts {
    std::string version;
    std::string compiler;
    std::string buildType;
    std::vector<pictures::LibraryVersion> libraries;
    std::string system;
    std::string processor;
    std::string instructionSet; ///< in use
    std::vector<std::string> instructionSets;
    unsigned threads = 0; ///< 0: not known
};

/// Lines of a title and a value.
std::string factsText(const EffectFacts& effect, const BuildFacts& build);

std::string factsJson(const EffectFacts& effect, const BuildFacts& build);

} // namespace kovalune::cli
