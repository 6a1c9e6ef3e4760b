#include "render/LoadedEffect.h"

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

void hideRememberedDefaultsFromLoaded() {
    // The effect looks for them in the user's folder for settings: here, below what is no folder.
    ::setenv("XDG_CONFIG_HOME", "/dev/null", 1);
}

OpenEffect openEffect(const std::optional<std::string>& plugin, int threads, Defaults defaults) {
    if (!plugin) {
        return {threads, defaults};
    }
    if (defaults == Defaults::kFactory) {
        hideRememberedDefaultsFromLoaded(); // before the effect's code is there, which may look at once
    }
    return {loadedEffect(*plugin), threads};
}

} // namespace kovalune::render
