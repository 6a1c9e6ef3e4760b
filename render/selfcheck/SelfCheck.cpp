#include "render/selfcheck/SelfCheck.h"

#include "render/selfcheck/GoldenHash.h"
#include "render/selfcheck/GoldenScene.h"

#include <exception>
#include <vector>

namespace kovalune::selfcheck {

namespace {

/// What stands in a line before the scene's text.
std::string hashIn(std::string_view line, std::string_view scene) {
    const std::size_t space = line.find(' ');
    return space != std::string_view::npos && line.substr(space + 1) == scene
               ? std::string(line.substr(0, space))
               : "another scene: " + std::string(line);
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
    const std::span<const std::string_view> expected = goldenLines();
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
        if (found == wanted) {
            continue;
        }
        ++outcome.differences;
        if (!outcome.first) {
            outcome.first = Difference{text, wanted, found};
        }
        if (!request.toTheEnd) {
            break;
        }
    }
    return outcome;
}

} // namespace kovalune::selfcheck
