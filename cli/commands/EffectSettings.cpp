#include "cli/commands/EffectSettings.h"

#include "effect/Kovalune.h"
#include "render/LoadedEffect.h"
#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "render/SettingsLayer.h"
#include "render/shots/Machine.h"
#include "render/shots/ParamsFile.h"
#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

namespace kovalune::cli {

namespace {

render::SettingsLayer layerOf(const host::Session& session, const std::string& file) {
    return render::parseSettingsText(session, shots::paramsTextOf(file), file);
}

/// A file as a pass that bears its name.
render::SettingsLayer passOf(const host::Session& session, const std::string& file,
                             const std::vector<render::SettingsLayer>& before) {
    const std::string name = std::filesystem::path(file).stem().string();
    render::SettingsLayer layer = layerOf(session, file);
    if (!layer.passes.empty()) {
        throw text::Failure(text::FailureKind::kUsage, "--pass " + text::inQuotes(file) +
                                                           ": it has passes of its own; give it to --params");
    }
    for (const render::SettingsLayer& each : before) {
        for (const render::PassSettings& pass : each.passes) {
            if (pass.name == name) {
                throw text::Failure(text::FailureKind::kUsage, "--pass " + text::inQuotes(file) +
                                                                   ": there is a pass " +
                                                                   text::inQuotes(name) + " already");
            }
        }
    }
    layer.passes.push_back(std::exchange(layer.common, {}));
    layer.passes.back().name = name;
    return layer;
}

/// Of an effect that has one. Only the last pass is to be looked at; what the others hand on is a picture.
void chooseView(const host::Session& session, render::ShotSettings& settings,
                const std::optional<std::string>& view) {
    if (view) {
        const int index = render::findSettable(session.params(), render::kViewLabel);
        const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
        settings.setInLast(index, render::parseValue(def, session.choices(index), *view));
    }
    const std::optional<int> index = session.findParam(std::string(render::kViewLabel));
    const std::vector<std::string> choices = index ? session.choices(*index) : std::vector<std::string>();
    const auto normal = std::find(choices.begin(), choices.end(), "Normal");
    if (normal != choices.end()) {
        settings.setBeforeLast(*index, static_cast<A_long>(normal - choices.begin() + 1));
    }
}

/// What the command line sets has been looked at by now; what is refused here was remembered.
void refuseDefaults(host::Session& session, const render::ShotSettings& settings) {
    const host::ParamValues before = render::valuesOf(session);
    render::setValues(session, settings.valuesAt(settings.passCount() - 1, 0));
    const std::optional<render::RefusedChoice> refused = render::refusedChoice(session);
    render::setValues(session, before);
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

render::Defaults startingDefaults(const EffectArguments& arguments) {
    const bool factory = arguments.factory || !arguments.paramsFiles.empty() || !arguments.passFiles.empty();
    return factory ? render::Defaults::kFactory : render::Defaults::kRemembered;
}

void chooseInstructionSet(const std::optional<std::string>& cpu) {
    if (cpu && !useInstructionSet(*cpu)) {
        throw text::Failure(text::FailureKind::kUsage, "--cpu: this machine has no " + *cpu);
    }
}

render::OpenEffect openEffect(const EffectArguments& arguments) {
    chooseInstructionSet(arguments.cpu);
    const int threads =
        arguments.threads > 0 ? arguments.threads : std::min(shots::usableProcessors(), render::kMostThreads);
    return render::openEffect(arguments.plugin, threads, startingDefaults(arguments));
}

render::ShotSettings shotSettings(host::Session& session, const EffectArguments& arguments,
                                  const std::optional<std::string>& view) {
    std::vector<render::SettingsLayer> layers;
    for (const std::string& file : arguments.paramsFiles) {
        layers.push_back(layerOf(session, file));
    }
    for (const std::string& file : arguments.passFiles) {
        layers.push_back(passOf(session, file, layers));
    }
    render::ShotSettings settings(session, layers, render::parseSettingOptions(session, arguments.settings));
    if (arguments.until) {
        settings.endWith(*arguments.until);
    }
    chooseView(session, settings, view);
    refuseDefaults(session, settings);
    return settings;
}

render::NamedParams applySettings(host::Session& session, const EffectArguments& arguments,
                                  const std::optional<std::string>& view) {
    const render::ShotSettings settings = shotSettings(session, arguments, view);
    const char* const what = settings.hasPasses()  ? "passes"
                             : settings.hasKeys()  ? "keys"
                             : settings.hasAreas() ? "a mask or a region"
                                                   : nullptr;
    if (what != nullptr) {
        throw text::Failure(text::FailureKind::kUsage,
                            std::string("the settings have ") + what + ", which this command does not take");
    }
    render::setValues(session, settings.valuesAt(0, 0));
    return settings.named(0);
}

} // namespace kovalune::cli
