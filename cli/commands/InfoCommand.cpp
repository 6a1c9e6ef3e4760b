#include "cli/Commands.h"

#include "cli/commands/BuildFacts.h"
#include "cli/text/InfoText.h"
#include "hostapi/Constants.h"
#include "render/LoadedEffect.h"

#include <string_view>
#include <vector>

namespace kovalune::cli {

namespace {

/// An effect ends its lines by CR, as dialogs want it, or by LF or both. Empty lines are left out.
std::vector<std::string> linesIn(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        if (end != 0) {
            lines.emplace_back(text.substr(0, end));
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

std::vector<int> depthsOf(const host::Session& session) {
    std::vector<int> depths = {8};
    if ((session.outFlags() & PF_OutFlag_DEEP_COLOR_AWARE) != 0) {
        depths.push_back(16);
    }
    if ((session.outFlags2() & PF_OutFlag2_FLOAT_COLOR_AWARE) != 0) {
        depths.push_back(32);
    }
    return depths;
}

EffectFacts effectFacts(const std::optional<std::string>& plugin) {
    render::OpenEffect effect = render::openEffect(plugin, 0, render::Defaults::kRemembered);
    host::Session& session = effect.session();
    const host::CommandResult about = session.about();
    render::requireSuccess(about, "the effect's about text");
    EffectFacts facts;
    facts.plugin = plugin;
    facts.about = linesIn(about.returnMsg);
    facts.version = session.effectVersion();
    facts.outFlags = session.outFlags();
    facts.outFlags2 = session.outFlags2();
    facts.depths = depthsOf(session);
    facts.smartRender = (session.outFlags2() & PF_OutFlag2_SUPPORTS_SMART_RENDER) != 0;
    return facts;
}

} // namespace

std::string infoText(const InfoArguments& arguments) {
    const EffectFacts effect = effectFacts(arguments.plugin);
    return arguments.json ? factsJson(effect, buildFacts()) : factsText(effect, buildFacts());
}

} // namespace kovalune::cli
