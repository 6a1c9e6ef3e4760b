#include "adapters/openfx/Engine.h"

#include "adapters/openfx/ActionFailure.h"
#include "effect/Kovalune.h"
#include "hostapi/Constants.h"
#include "render/EnabledControls.h"
#include "render/LinkedEffect.h"

#include <algorithm>
#include <utility>

namespace kovalune::openfx {

namespace {

host::HostOptions optionsFor(std::optional<HostThreads>& threads) {
    host::HostOptions options = render::toolOptions(threads ? threads->count() : 0);
    options.lentThreads = threads ? &*threads : nullptr;
    return options;
}

std::optional<HostThreads> threadsOf(const Suites& suites) {
    return suites.threads == nullptr ? std::nullopt : std::optional<HostThreads>(*suites.threads);
}

/// As many as frames that are rendered at once use; more go back to the system.
constexpr std::size_t kMostImages = 8;

} // namespace

Engine::Engine(const Suites& suites) : threads_(threadsOf(suites)), host_(optionsFor(threads_)) {
    const FactoryDefaultsScope factory;
    session_.emplace(host_, render::linkedEffect());
    const host::CommandResult& result = session_->setupResult();
    if (!result.ok()) {
        throw ActionFailure(result.code == PF_Err_OUT_OF_MEMORY ? kMemory : kFailed,
                            "Kovalune cannot be set up: code " + std::to_string(result.code) + ' ' +
                                result.returnMsg);
    }
}

std::vector<bool> Engine::enabledOf(const host::ParamValues& values) {
    const std::lock_guard lock(valuesMutex_);
    for (const auto& [index, value] : values) {
        session_->setValue(index, value);
    }
    return render::enabledControls(*session_);
}

host::Image Engine::takeImage(PF_PixelFormat format, int width, int height) {
    {
        const std::lock_guard lock(imagesMutex_);
        const auto fits = [&](const host::Image& image) {
            return image.format() == format && image.width() == width && image.height() == height;
        };
        const auto found = std::find_if(images_.begin(), images_.end(), fits);
        if (found != images_.end()) {
            host::Image image = std::move(*found);
            images_.erase(found);
            return image;
        }
    }
    return host::Image(format, width, height);
}

void Engine::giveBack(host::Image image) {
    const std::lock_guard lock(imagesMutex_);
    try {
        images_.push_back(std::move(image));
        if (images_.size() > kMostImages) {
            images_.erase(images_.begin());
        }
    } catch (const std::bad_alloc&) {
        return; // then the next frame takes a new one
    }
}

void Engine::forgetImages() {
    const std::lock_guard lock(imagesMutex_);
    images_.clear();
}

} // namespace kovalune::openfx
