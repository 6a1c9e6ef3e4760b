#include "cli/DefaultsCommand.h"

#include "cli/AtomicFile.h"
#include "cli/EffectSettings.h"
#include "cli/Failure.h"
#include "cli/Interrupt.h"
#include "cli/ParamsFile.h"

namespace kovalune {

namespace {

/// Nothing is rendered, so one thread is enough.
OpenEffect builtInEffect(bool factory) {
    return OpenEffect(std::nullopt, 1, factory);
}

std::string save(const DefaultsArguments& arguments, const std::string& path) {
    OpenEffect effect = builtInEffect(startsFromFactory(arguments.effect));
    applySettings(effect.session(), arguments.effect, arguments.view);
    if (isWriteProtected(path)) {
        throw Failure(ExitCode::kFile, "cannot write " + inQuotes(path) + ": it is write-protected");
    }
    Interrupt interrupt; // the file is written value by value: all or none of them
    int reason = 0;
    const DefaultsResult result = rememberDefaults(path, effect.session().paramsWithValues(), &reason);
    interrupt.release();
    if (interrupt.came() && result == DefaultsResult::kDone) {
        throw Interruption(interrupt.signalNumber(), "interrupted after saving " + path);
    }
    interrupt.finish();
    if (result != DefaultsResult::kDone) {
        throw Failure(ExitCode::kFile,
                      "cannot write " + inQuotes(path) + (reason == 0 ? "" : ": " + systemReason(reason)));
    }
    return "saved " + printable(path) + '\n';
}

std::string forget(const std::string& path) {
    switch (forgetDefaults(path)) {
    case DefaultsResult::kDone:
        return "deleted " + printable(path) + '\n';
    case DefaultsResult::kNothingThere:
        return "nothing is remembered: there is no " + printable(path) + '\n';
    default:
        throw Failure(ExitCode::kFile, "cannot delete " + inQuotes(path));
    }
}

std::string show(const std::string& path) {
    OpenEffect effect = builtInEffect(false);
    const host::Session& session = effect.session();
    const std::string settings = paramsFileText(session, [&](int index) {
        return isDefaultRemembered(path, session.params()[static_cast<std::size_t>(index)]);
    });
    return "; " + printable(path) + '\n' + (settings.empty() ? "; nothing is remembered\n" : settings);
}

} // namespace

std::string defaultsText(const DefaultsArguments& arguments) {
    // Before the effect is opened: without the remembered defaults, nothing tells where they are.
    const std::string path = defaultsPath();
    if (path.empty()) {
        throw Failure(ExitCode::kFile, "there is no folder for settings, or its path is too long");
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

} // namespace kovalune
