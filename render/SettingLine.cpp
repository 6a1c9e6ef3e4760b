#include "render/SettingLine.h"

#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>
#include <system_error>
#include <vector>

namespace kovalune::render {

namespace {

bool isLabel(const host::Session& session, std::string_view label) {
    const std::vector<PF_ParamDef>& params = session.params();
    return std::any_of(params.begin(), params.end(),
                       [label](const PF_ParamDef& def) { return sameLabel(def.name, label); });
}

std::optional<SettingTarget> componentOf(const host::Session& session, std::string_view label) {
    constexpr std::string_view kComponents = "rgba";
    if (label.size() < 3 || label[label.size() - 2] != '.') {
        return std::nullopt;
    }
    const char component = text::foldedCase(label.substr(label.size() - 1)).front();
    const std::string_view color = label.substr(0, label.size() - 2);
    const std::vector<PF_ParamDef>& params = session.params();
    const bool isColor = std::any_of(params.begin(), params.end(), [color](const PF_ParamDef& def) {
        return def.param_type == PF_Param_COLOR && sameLabel(def.name, color);
    });
    if (!isColor || isLabel(session, label) || kComponents.find(component) == std::string_view::npos) {
        return std::nullopt;
    }
    return SettingTarget{findSettable(params, color), component};
}

/// For messages and ranges a component is a slider.
PF_ParamDef componentDefinition(std::string_view label) {
    PF_ParamDef def{};
    def.param_type = PF_Param_SLIDER;
    std::memcpy(def.name, label.data(), std::min(label.size(), sizeof def.name - 1));
    def.u.sd.valid_min = 0;
    def.u.sd.valid_max = 255;
    return def;
}

int64_t frameOf(std::string_view text, std::string_view label) {
    int64_t frame = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), frame);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw text::Failure(text::FailureKind::kUsage,
                            "a key is LABEL@FRAME=VALUE with a whole number as FRAME, not " +
                                text::inQuotes(label));
    }
    return frame;
}

} // namespace

Setting parseSetting(const host::Session& session, std::string_view line) {
    const std::size_t equals = line.find('=');
    const bool isText = line.find('\0') == std::string_view::npos;
    if (equals == std::string_view::npos || !isText) {
        throw text::Failure(text::FailureKind::kUsage,
                            "a line takes LABEL=VALUE, not " + text::inQuotes(line));
    }
    Setting setting;
    std::string_view label = text::trimmed(line.substr(0, equals));
    const std::string_view value = line.substr(equals + 1);
    const std::size_t at = label.rfind('@');
    if (at != std::string_view::npos && !isLabel(session, label)) {
        setting.frame = frameOf(text::trimmed(label.substr(at + 1)), label);
        label = text::trimmed(label.substr(0, at));
    }
    if (const auto component = componentOf(session, label)) {
        setting.target = *component;
        setting.value = parseValue(componentDefinition(label), {}, value);
        return setting;
    }
    setting.target.index = findSettable(session.params(), label);
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(setting.target.index)];
    setting.value = parseValue(def, session.choices(setting.target.index), value);
    return setting;
}

} // namespace kovalune::render
