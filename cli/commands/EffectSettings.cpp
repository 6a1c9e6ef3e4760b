#include "cli/commands/EffectSettings.h"

#include "effect/Kovalune.h"
#include "render/ParamText.h"
#include "render/SettingsText.h"
#include "render/shots/ParamsFile.h"
#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <string_view>

namespace kovalune::cli {

namespace {

/// "LABEL=VALUE"
int applySetting(host::Session& session, std::string_view setting) {
    const std::size_t equals = setting.find('=');
    if (equals == std::string_view::npos) {
        throw text::Failure(text::FailureKind::kUsage,
                            "--set takes LABEL=VALUE, not " + text::inQuotes(setting));
    }
    return render::setParameter(session, setting.substr(0, equals), setting.substr(equals + 1));
}

/// What the command line sets has been looked at by now; what is refused here was remembered.
void refuseDefaults(const host::Session& session) {
    const std::optional<render::RefusedChoice> refused = render::refusedChoice(session);
    if (!refused) {
        return;
    }
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(refused->index)];
    const bool isView = text::equalWithoutCase(def.name, render::kViewLabel);
    throw text::Failure(text::FailureKind::kUsage, refused->reason +
                                                       "; this is the remembered default, which " +
                                                       (isView ? "--view" : "--set") + " overrules");
}

} // namespace

bool startsFromFactory(const EffectArguments& arguments) {
    return arguments.factory || arguments.paramsFile;
}

void chooseInstructionSet(const std::optional<std::string>& cpu) {
    if (cpu && !useInstructionSet(*cpu)) {
        throw text::Failure(text::FailureKind::kUsage, "--cpu: this machine has no " + *cpu);
    }
}

render::OpenEffect openEffect(const EffectArguments& arguments) {
    chooseInstructionSet(arguments.cpu);
    return render::OpenEffect(arguments.plugin, arguments.threads, startsFromFactory(arguments));
}

render::NamedParams applySettings(host::Session& session, const EffectArguments& arguments,
                                  const std::optional<std::string>& view) {
    render::NamedParams named;
    if (arguments.paramsFile) {
        named = render::applyParamsText(session, shots::paramsTextOf(*arguments.paramsFile),
                                        *arguments.paramsFile);
    }
    for (const std::string& setting : arguments.settings) {
        named.insert(applySetting(session, setting));
    }
    if (view) {
        named.insert(render::setParameter(session, render::kViewLabel, *view));
    }
    refuseDefaults(session);
    return named;
}

} // namespace kovalune::cli
