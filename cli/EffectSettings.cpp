#include "cli/EffectSettings.h"

#include "cli/AsciiText.h"
#include "cli/Failure.h"
#include "cli/ParamLabel.h"
#include "cli/ParamText.h"
#include "cli/ParamsFile.h"
#include "hostapi/Constants.h"

namespace kovalune {

namespace {

int setParameter(host::Session& session, std::string_view label, std::string_view value) {
    const int index = findSettable(session.params(), trimmed(label));
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    session.setValue(index, parseValue(def, session.choices(index), value));
    return index;
}

/// What the command line sets has been looked at by now; what is refused here was remembered.
void refuseDefaults(const host::Session& session) {
    const int count = static_cast<int>(session.params().size());
    for (int index = 1; index < count; ++index) {
        const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
        if (def.param_type != PF_Param_POPUP) {
            continue;
        }
        const std::string refusal = choiceRefusal(def, session.choices(index), session.value(index));
        if (refusal.empty()) {
            continue;
        }
        const bool isView = equalWithoutCase(def.name, kViewLabel);
        throw Failure(ExitCode::kUsage, refusal + "; this is the remembered default, which " +
                                            (isView ? "--view" : "--set") + " overrules");
    }
}

} // namespace

bool startsFromFactory(const EffectArguments& arguments) {
    return arguments.factory || arguments.paramsFile;
}

OpenEffect openEffect(const EffectArguments& arguments) {
    return OpenEffect(arguments.plugin, arguments.threads, startsFromFactory(arguments));
}

NamedParams applySettings(host::Session& session, const EffectArguments& arguments,
                          const std::optional<std::string>& view) {
    NamedParams named;
    if (arguments.paramsFile) {
        named = applyParamsFile(session, *arguments.paramsFile);
    }
    for (const std::string& setting : arguments.settings) {
        const std::size_t equals = setting.find('=');
        if (equals == std::string::npos) {
            throw Failure(ExitCode::kUsage, "--set takes LABEL=VALUE, not " + inQuotes(setting));
        }
        const std::string_view text(setting);
        named.insert(setParameter(session, text.substr(0, equals), text.substr(equals + 1)));
    }
    if (view) {
        named.insert(setParameter(session, kViewLabel, *view));
    }
    refuseDefaults(session);
    return named;
}

} // namespace kovalune
