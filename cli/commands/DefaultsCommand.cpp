#include "cli/Commands.h"

#include "cli/commands/EffectSettings.h"
#include "render/SettingsText.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/SignalWatch.h"
#include "text/Failure.h"
#include "text/MessageText.h"

namespace kovalune::cli {

namespace {

/// Nothing is rendered, so one thread is enough.
render::OpenEffect builtInEffect(render::Defaults defaults) {
    return {1, defaults};
}

std::string save(const DefaultsArguments& arguments, const std::string& path) {
    render::OpenEffect effect = builtInEffect(startingDefaults(arguments.effect));
    applySettings(effect.session(), arguments.effect, arguments.view);
    if (shots::isWriteProtected(path)) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot write " + text::inQuotes(path) + ": it is write-protected");
    }
    shots::Interrupt interrupt; // the file is written value by value: all or none of them
    int reason = 0;
    const DefaultsResult result = rememberDefaults(path, effect.session().paramsWithValues(), &reason);
    interrupt.release();
    if (interrupt.came() && result == DefaultsResult::kDone) {
        throw shots::Interruption(interrupt.signalNumber(), "interrupted after saving " + path);
    }
    interrupt.finish();
    if (result != DefaultsResult::kDone) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot write " + text::inQuotes(path) +
                                (reason == 0 ? "" : ": " + text::systemReason(reason)));
    }
    return "saved " + text::printable(path) + '\n';
}

std::string forget(const std::string& path) {
    switch (forgetDefaults(path)) {
    case DefaultsResult::kDone:
        return "deleted " + text::printable(path) + '\n';
    case DefaultsResult::kNothingThere:
        return "nothing is remembered: there is no " + text::printable(path) + '\n';
    default:
        throw text::Failure(text::FailureKind::kFile, "cannot delete " + text::inQuotes(path));
    }
}

std::string show(const std::string& path) {
    render::OpenEffect effect = builtInEffect(render::Defaults::kRemembered);
    const host::Session& session = effect.session();
    const std::string settings = render::paramsFileText(session, [&](int index) {
        return isDefaultRemembered(path, session.params()[static_cast<std::size_t>(index)]);
    });
    return "; " + text::printable(path) + '\n' + (settings.empty() ? "; nothing is remembered\n" : settings);
}

} // namespace

std::string defaultsText(const DefaultsArguments& arguments) {
    // Before the effect is opened: without the remembered defaults, nothing tells where they are.
    const std::string path = defaultsPath();
    if (path.empty()) {
        throw text::Failure(text::FailureKind::kFile,
                            "there is no folder for settings, or its path is too long");
    }
    switch (arguments.action) {
    case DefaultsAction::kSave:
        return save(arguments, path);
    case DefaultsAction::kForget:
        return forget(path);
    default:
        return show(path);
    }
}

} // namespace kovalune::cli
