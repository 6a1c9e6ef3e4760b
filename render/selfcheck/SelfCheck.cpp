#include "render/selfcheck/SelfCheck.h"

#include "render/selfcheck/GoldenHash.h"
#include "render/selfcheck/GoldenScene.h"

#include <exception>
#include <vector>

namespace kovalune::selfcheck {

namespace {

/// Without remarks.
std::vector<std::string> lines() {
    std::vector<std::string> found;
    std::string_view text = goldenHashes();
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        if (!line.empty() && line.front() != '#') {
            found.emplace_back(line);
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return found;
}

/// What stands in a line before the scene's text.
std::string hashIn(const std::string& line, const std::string& scene) {
    const std::size_t space = line.find(' ');
    return space != std::string::npos && line.substr(space + 1) == scene ? line.substr(0, space)
                                                                         : "another scene: " + line;
}

std::string hashOrReason(const GoldenScene& scene, host::EffectModule& module, host::Host& host) {
    try {
        return goldenHash(scene, module, host);
    } catch (const std::exception& exception) {
        return exception.what();
    }
}

} // namespace

CheckOutcome checkScenes(host::EffectModule& module, host::Host& host, const CheckRequest& request) {
    const std::vector<std::string> expected = lines();
    const std::vector<GoldenScene> scenes = goldenScenes();
    CheckOutcome outcome;
    for (std::size_t i = 0; i < scenes.size(); i += static_cast<std::size_t>(request.every)) {
        const GoldenScene& scene = scenes[i];
        if (request.framesAlone && scene.what != GoldenScene::What::kFrame) {
            continue;
        }
        const std::string text = scene.text();
        const std::string wanted = i < expected.size() ? hashIn(expected[i], text) : "nothing";
        const std::string found = hashOrReason(scene, module, host);
        ++outcome.scenes;
        if (found != wanted) {
            outcome.first = Difference{text, wanted, found};
            break;
        }
    }
    return outcome;
}

} // namespace kovalune::selfcheck
