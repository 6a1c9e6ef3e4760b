#include "render/OpenEffect.h"

#include "effect/Kovalune.h"
#include "render/LinkedEffect.h"
#include "text/Failure.h"

#include <utility>

namespace kovalune::render {

namespace {

host::Session linkedSession(host::Host& host, Defaults defaults) {
    std::optional<FactoryDefaultsScope> factory;
    if (defaults == Defaults::kFactory) {
        factory.emplace();
    }
    return {host, linkedEffect()};
}

/// What left the effect's entry point. The code of such a result is not the effect's.
std::string thrownText(const host::CommandResult& result) {
    return result.thrownValue ? "the number " + std::to_string(*result.thrownValue) : result.exceptionText;
}

} // namespace

OpenEffect::OpenEffect(int threads, Defaults defaults)
    : host_(toolOptions(threads)), session_(linkedSession(host_, defaults)) {
    requireSuccess(session_.setupResult(), "the effect's set-up");
}

OpenEffect::OpenEffect(host::EffectModule loaded, int threads)
    : host_(toolOptions(threads)), loaded_(std::move(loaded)), session_(host_, *loaded_) {
    requireSuccess(session_.setupResult(), "the effect's set-up");
}

void requireSuccess(const host::CommandResult& result, const std::string& action) {
    if (result.ok()) {
        return;
    }
    std::string text = action + (result.threw ? " failed by an exception: " + thrownText(result)
                                              : " failed with code " + std::to_string(result.code));
    if (!result.returnMsg.empty()) {
        text += ": " + result.returnMsg;
    }
    throw text::Failure(text::FailureKind::kEffect, text);
}

} // namespace kovalune::render
