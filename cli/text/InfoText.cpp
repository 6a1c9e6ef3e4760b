#include "cli/text/InfoText.h"

#include "cli/text/EffectFlags.h"
#include "text/MessageText.h"

#include <nlohmann/json.hpp>

namespace kovalune::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kTitleWidth = 16;

std::string padded(const std::string& title) {
    return title + std::string(kTitleWidth - title.size(), ' ');
}

std::string lineOf(const std::string& title, const std::string& value) {
    std::string line = padded(title) + text::printable(value);
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

/// The title stands before the first line only.
std::string linesOf(const std::string& title, const std::vector<std::string>& values) {
    std::string text;
    for (const std::string& value : values) {
        text += lineOf(text.empty() ? title : "", value);
    }
    return text.empty() ? lineOf(title, "none") : text;
}

std::string flagsText(const std::string& title, A_long flags, const std::vector<std::string>& names) {
    return lineOf(title, hexNumber(static_cast<A_u_long>(flags))) +
           (names.empty() ? std::string() : linesOf("", names));
}

/// "8, 16, 32 (float) bits a channel"
std::string depthsText(const std::vector<int>& depths) {
    std::string text;
    for (const int depth : depths) {
        text += (text.empty() ? "" : ", ") + std::to_string(depth) + (depth == 32 ? " (float)" : "");
    }
    return text + " bits a channel";
}

std::string effectText(const EffectFacts& effect) {
    return lineOf("Effect", effect.plugin ? *effect.plugin : "built in") + linesOf("About", effect.about) +
           lineOf("Effect version", versionText(effect.version) + " (" + hexNumber(effect.version) + ")") +
           flagsText("Out flags", effect.outFlags, outFlagNames(effect.outFlags)) +
           flagsText("Out flags 2", effect.outFlags2, outFlag2Names(effect.outFlags2)) +
           lineOf("Depths", depthsText(effect.depths)) +
           lineOf("Smart render", effect.smartRender ? "yes" : "no");
}

/// "avx2 (of plain, sse2, avx2)"
std::string instructionsText(const BuildFacts& build) {
    std::string all;
    for (const std::string& set : build.instructionSets) {
        all += (all.empty() ? "" : ", ") + set;
    }
    return build.instructionSet + " (of " + all + ")";
}

std::string buildText(const BuildFacts& build) {
    std::vector<std::string> libraries;
    for (const pictures::LibraryVersion& library : build.libraries) {
        libraries.push_back(library.name + ' ' + library.version);
    }
    return lineOf("Command version", build.version) + lineOf("Compiler", build.compiler) +
           lineOf("Build type", build.buildType) + linesOf("Libraries", libraries) +
           lineOf("System", build.system) + lineOf("Processor", build.processor) +
           lineOf("Instructions", instructionsText(build)) +
           lineOf("Threads", build.threads == 0 ? "unknown" : std::to_string(build.threads));
}

Json effectJson(const EffectFacts& effect) {
    return {{"plugin", effect.plugin ? Json(*effect.plugin) : Json(nullptr)},
            {"about", effect.about},
            {"version", versionText(effect.version)},
            {"packedVersion", effect.version},
            {"outFlags", static_cast<A_u_long>(effect.outFlags)},
            {"outFlagNames", outFlagNames(effect.outFlags)},
            {"outFlags2", static_cast<A_u_long>(effect.outFlags2)},
            {"outFlag2Names", outFlag2Names(effect.outFlags2)},
            {"depths", effect.depths},
            {"smartRender", effect.smartRender}};
}

Json buildJson(const BuildFacts& build) {
    Json libraries = Json::array();
    for (const pictures::LibraryVersion& library : build.libraries) {
        libraries.push_back({{"name", library.name}, {"version", library.version}});
    }
    return {{"version", build.version},
            {"compiler", build.compiler},
            {"buildType", build.buildType},
            {"libraries", libraries},
            {"system", build.system},
            {"processor", build.processor},
            {"instructionSet", build.instructionSet},
            {"instructionSets", build.instructionSets},
            {"threads", build.threads == 0 ? Json(nullptr) : Json(build.threads)}};
}

} // namespace

std::string factsText(const EffectFacts& effect, const BuildFacts& build) {
    return effectText(effect) + buildText(build);
}

std::string factsJson(const EffectFacts& effect, const BuildFacts& build) {
    const Json json = {{"effect", effectJson(effect)}, {"command", buildJson(build)}};
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace kovalune::cli
