#include "render/OpenEffect.h"

#include "render/LinkedEffect.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kovalune::render {

namespace {

/// The system's loader repeats the name in its reason.
std::string withNameShown(std::string text, const std::string& name) {
    const std::string replacement = text::shown(name);
    for (std::size_t at = text.find(name); at != std::string::npos;
         at = text.find(name, at + replacement.size())) {
        text.replace(at, name.size(), replacement);
    }
    return text;
}

} // namespace

host::EffectModule loadedEffect(const std::string& plugin, host::SetDown setDown) {
    // The system's loader would look for a name without a folder in the system's folders.
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(plugin, error);
    if (error || !std::filesystem::is_regular_file(path, error)) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot load the plug-in " + text::inQuotes(plugin) +
                                (error ? ": " + text::systemReason(error.value()) : ": it is not a file"));
    }
    try {
        return host::EffectModule::load(path.string(), setDown);
    } catch (const host::HostError& reason) {
        throw text::Failure(text::FailureKind::kFile, withNameShown(reason.what(), path.string()));
    }
}

void hideRememberedDefaults() {
    // The effect looks for them in the user's folder for settings: here, below what is no folder.
    ::setenv("XDG_CONFIG_HOME", "/dev/null", 1);
}

namespace {

/// Before the effect's code is there, which may look at once.
host::HostOptions optionsFor(int threads, bool factory) {
    if (factory) {
        hideRememberedDefaults();
    }
    return toolOptions(threads);
}

/// What left the effect's entry point. The code of such a result is not the effect's.
std::string thrownText(const host::CommandResult& result) {
    return result.thrownValue ? "the number " + std::to_string(*result.thrownValue) : result.exceptionText;
}

} // namespace

OpenEffect::OpenEffect(const std::optional<std::string>& plugin, int threads, bool factory)
    : host_(optionsFor(threads, factory)),
      loaded_(plugin ? std::optional(loadedEffect(*plugin)) : std::nullopt),
      session_(host_, loaded_ ? *loaded_ : linkedEffect()) {
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
