// The command line as a plain record. It is parsed once, before anything else happens.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kovalune {

inline constexpr int kMostThreads = 64; // the host's limit too

struct RenderArguments {
    std::string input;
    std::string output;
    std::vector<std::string> settings; // "LABEL=VALUE", in order
    std::optional<std::string> view;
    std::optional<std::string> plugin;
    int threads = 0; // to kMostThreads; 0: what the machine has
};

struct ParamsArguments {
    std::optional<std::string> plugin;
};

// What --help and --version ask for.
struct ShownText {
    std::string text;
};

using Arguments = std::variant<RenderArguments, ParamsArguments, ShownText>;

// Throws Failure for a command line that is wrong in form; labels and values are looked at later.
Arguments parseArguments(int count, const char* const* words);

} // namespace kovalune
