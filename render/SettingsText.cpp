#include "render/SettingsText.h"

#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "render/SettingLine.h"
#include "render/SettingsLayer.h"
#include "render/ShotSettings.h"
#include "text/Failure.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <utility>
#include <vector>

namespace kovalune::render {

namespace {

constexpr char kSaysNothing = ';';

const PF_ParamDef& definitionOf(const host::Session& session, int index) {
    return session.params()[static_cast<std::size_t>(index)];
}

bool same(const host::ParamValue& a, const host::ParamValue& b) {
    const auto* color = std::get_if<PF_Pixel>(&a);
    const auto* other = std::get_if<PF_Pixel>(&b);
    if (color != nullptr && other != nullptr) {
        return color->red == other->red && color->green == other->green && color->blue == other->blue &&
               color->alpha == other->alpha;
    }
    if (const auto* number = std::get_if<double>(&a)) {
        return std::holds_alternative<double>(b) && *number == std::get<double>(b);
    }
    const auto* number = std::get_if<A_long>(&a);
    return number != nullptr && std::holds_alternative<A_long>(b) && *number == std::get<A_long>(b);
}

bool readsBack(const host::Session& session, const std::string& line, int index,
               const host::ParamValue& value) {
    try {
        const Setting read = parseSetting(session, line);
        return text::printable(line) == line && line.find_first_of("#;[") != 0 &&
               read.target.index == index && same(read.value, value);
    } catch (const text::Failure&) {
        return false;
    }
}

/// The forms that a value has, the best to read first.
std::vector<std::string> valueTexts(const host::Session& session, int index, const host::ParamValue& value) {
    if (const auto* number = std::get_if<double>(&value)) {
        return {text::shortestText(*number)};
    }
    std::vector<std::string> texts = {valueText(definitionOf(session, index), session.choices(index), value)};
    if (const auto* number = std::get_if<A_long>(&value)) {
        texts.push_back(std::to_string(*number));
    }
    return texts;
}

/// "@7" or nothing.
std::string frameMark(std::optional<int64_t> frame) {
    return frame ? '@' + std::to_string(*frame) : std::string();
}

std::string linesOf(const host::Session& session, int index, std::optional<int64_t> frame) {
    constexpr A_u_char kOpaque = 255;
    const std::string name = definitionOf(session, index).name;
    const std::string label = name + frameMark(frame);
    host::ParamValue value = session.value(index);
    std::string alphaLine;
    if (auto* color = std::get_if<PF_Pixel>(&value); color != nullptr && color->alpha != kOpaque) {
        alphaLine = name + ".a" + frameMark(frame) + '=' +
                    std::to_string(std::exchange(color->alpha, kOpaque)) + '\n';
    }
    const std::vector<std::string> texts = valueTexts(session, index, value);
    for (const std::string& text : texts) {
        std::string line = label;
        line += '=';
        line += text;
        if (readsBack(session, line, index, value)) {
            line += '\n';
            return line + alphaLine;
        }
    }
    return std::string(1, kSaysNothing) + ' ' + text::printable(label + '=' + texts.front()) + '\n';
}

} // namespace

NamedParams applyParamsText(host::Session& session, std::string_view text, const std::string& name) {
    const SettingsLayer layer = parseSettingsText(session, text, name);
    const ShotSettings settings(session, {layer});
    if (settings.hasKeys() || settings.hasPasses()) {
        throw text::Failure(text::FailureKind::kUsage,
                            text::inQuotes(name) + " has " + (settings.hasPasses() ? "passes" : "keys") +
                                ", which are for frames, not for values that count always");
    }
    setValues(session, settings.valuesAt(0, 0));
    return settings.named(0);
}

std::string paramsFileText(const host::Session& session) {
    return paramsFileText(session, [](int) { return true; });
}

std::string paramsFileText(const host::Session& session, const std::function<bool(int index)>& chosen,
                           std::optional<int64_t> frame) {
    std::string text;
    const int count = static_cast<int>(session.params().size());
    for (int index = 1; index < count; ++index) {
        if (isSettable(definitionOf(session, index)) && chosen(index)) {
            text += linesOf(session, index, frame);
        }
    }
    return text;
}

} // namespace kovalune::render
