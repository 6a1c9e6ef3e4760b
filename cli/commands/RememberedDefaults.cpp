#include "cli/commands/RememberedDefaults.h"

#include "cli/commands/EffectSettings.h"
#include "cli/text/Reporting.h"
#include "render/LoadedEffect.h"
#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "render/SettingsText.h"
#include "text/MessageText.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kovalune::cli {

namespace {

/// To the last bit, so that they can be compared.
std::string valuesOf(const host::Session& session, bool allViews) {
    return render::paramsFileText(session, [&session, allViews](int index) {
        return !allViews ||
               !render::sameLabel(session.params()[static_cast<std::size_t>(index)].name, render::kViewLabel);
    });
}

/// Where new instances start, or nowhere.
std::string fileFor(const EffectArguments& arguments) {
    if (startingDefaults(arguments) == render::Defaults::kFactory) {
        return {};
    }
    std::error_code error;
    const std::string path = defaultsPath();
    return std::filesystem::is_regular_file(path, error) ? path : std::string();
}

bool written(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(file, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

std::string readToTheEnd(int file) {
    std::string text;
    std::array<char, 4096> bytes{};
    for (;;) {
        const ssize_t count = ::read(file, bytes.data(), bytes.size());
        if (count > 0) {
            text.append(bytes.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return text;
        }
    }
}

/// What the process of its own does. Whatever fails here fails in the command as well, which tells it.
[[noreturn]] void writeFactoryValues(int file, const EffectArguments& arguments,
                                     const std::optional<std::string>& view, bool allViews) noexcept {
    bool done = false;
    try {
        render::OpenEffect effect = render::openEffect(arguments.plugin, 1, render::Defaults::kFactory);
        applySettings(effect.session(), arguments, view);
        done = written(file, valuesOf(effect.session(), allViews));
    } catch (...) {
        done = false;
    }
    ::_exit(done ? 0 : 1);
}

/// None if they cannot be had.
std::optional<std::string> factoryValues(const EffectArguments& arguments,
                                         const std::optional<std::string>& view, bool allViews) {
    std::array<int, 2> ends{}; // to read from, to write to
    if (::pipe(ends.data()) != 0) {
        return std::nullopt;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        writeFactoryValues(ends[1], arguments, view, allViews);
    }
    ::close(ends[1]);
    std::string values = child < 0 ? std::string() : readToTheEnd(ends[0]);
    ::close(ends[0]);
    int status = 0;
    while (child > 0 && ::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return child > 0 && status == 0 ? std::optional(std::move(values)) : std::nullopt;
}

} // namespace

RememberedDefaults::RememberedDefaults(const EffectArguments& arguments,
                                       const std::optional<std::string>& view)
    : RememberedDefaults(arguments, view, false) {}

RememberedDefaults::RememberedDefaults(const EffectArguments& arguments,
                                       const std::optional<std::string>& view, bool allViews)
    : file_(fileFor(arguments)), allViews_(allViews) {
    if (!file_.empty()) {
        withoutThem_ = factoryValues(arguments, view, allViews);
    }
}

void RememberedDefaults::tellIfTheyCount(const host::Session& session) const {
    if (withoutThem_ && valuesOf(session, allViews_) != *withoutThem_) {
        tell("note: the defaults remembered in " + text::inQuotes(file_) +
             " count here; --factory leaves them out");
    }
}

} // namespace kovalune::cli
