#include "cli/Commands.h"

#include "cli/commands/EffectSettings.h"
#include "cli/commands/RememberedDefaults.h"
#include "hostapi/Constants.h"
#include "pictures/EmbeddedSettings.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "render/OpenEffect.h"
#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "render/json/ParamsJson.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace kovalune::cli {

namespace {

using Cells = std::array<std::string, 4>;

std::string defaultText(const PF_ParamDef& def, const std::vector<std::string>& choices,
                        const host::ParamValue& value) {
    const bool refused = !render::choiceRefusal(def, choices, value).empty();
    return render::valueText(def, choices, value) + (refused ? " (cannot be chosen)" : "");
}

Cells cellsOf(const host::Session& session, int index, std::size_t depth) {
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    const std::vector<std::string> choices = session.choices(index);
    return {std::string(2 * depth, ' ') + def.name, render::kindText(def),
            defaultText(def, choices, session.defaultValue(index)), render::rangeText(def, choices)};
}

/// The table's lines; groups have their label alone.
std::vector<Cells> linesOf(const host::Session& session) {
    std::vector<Cells> lines = {{"Label", "Kind", "Default", "Takes"}};
    std::size_t depth = 0;
    const int count = static_cast<int>(session.params().size());
    for (int index = 1; index < count; ++index) {
        const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
        if (def.param_type == PF_Param_GROUP_START) {
            lines.push_back({std::string(2 * depth, ' ') + def.name, {}, {}, {}});
            ++depth;
        } else if (def.param_type == PF_Param_GROUP_END) {
            depth -= depth > 0 ? 1 : 0;
        } else if (render::isSettable(def)) {
            lines.push_back(cellsOf(session, index, depth));
        }
    }
    return lines;
}

std::string aligned(const std::vector<Cells>& lines) {
    std::array<std::size_t, 4> widths{};
    for (const Cells& cells : lines) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            widths[i] = std::max(widths[i], cells[i].size());
        }
    }
    std::string text;
    for (const Cells& cells : lines) {
        std::string line;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            line += text::printable(cells[i]) + std::string(widths[i] - cells[i].size() + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    }
    return text;
}

std::string settingsIn(const std::string& file, const pictures::DecodeOptions& decoding) {
    const std::optional<std::string> settings = pictures::withMemoryFor(
        file, [&] { return pictures::embeddedSettings(pictures::readPicture(file, decoding)); });
    if (!settings) {
        throw text::Failure(text::FailureKind::kFile, "cannot read " + text::inQuotes(file) +
                                                          ": it holds no settings; 'kovalune render --embed' "
                                                          "writes them into a picture");
    }
    return *settings;
}

} // namespace

std::string paramsText(const ParamsArguments& arguments) {
    if (arguments.from) {
        return settingsIn(*arguments.from, arguments.decoding);
    }
    const RememberedDefaults remembered(arguments.effect, std::nullopt);
    render::OpenEffect effect = openEffect(arguments.effect);
    host::Session& session = effect.session();
    if (arguments.frame) {
        return shotSettings(session, arguments.effect, std::nullopt).textAt(session, *arguments.frame);
    }
    remembered.tellIfTheyCount(session);
    return arguments.json ? render::paramsJson(session) : aligned(linesOf(session));
}

} // namespace kovalune::cli
