#include "render/SettingsText.h"

#include "effect/Kovalune.h"
#include "hostapi/Constants.h"
#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <optional>
#include <utility>

namespace kovalune::render {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr char kSaysNothing = ';';
constexpr std::string_view kSayNothing = ";#";
constexpr char kWhole = ' ';

/// A parameter, or one of 'r', 'g', 'b' and 'a' of a colour. The whole of a colour is 'r', 'g' and 'b'.
struct Target {
    int index = 0;
    char component = kWhole;
};

struct Assignment {
    Target target;
    host::ParamValue value; ///< of a component: its number
};

const PF_ParamDef& definitionOf(const host::Session& session, int index) {
    return session.params()[static_cast<std::size_t>(index)];
}

std::optional<Target> componentOf(const host::Session& session, std::string_view label) {
    constexpr std::string_view kComponents = "rgba";
    if (label.size() < 3 || label[label.size() - 2] != '.') {
        return std::nullopt;
    }
    const char component = text::foldedCase(label.substr(label.size() - 1)).front();
    const std::string_view color = label.substr(0, label.size() - 2);
    const std::vector<PF_ParamDef>& params = session.params();
    const bool isLabel = std::any_of(params.begin(), params.end(),
                                     [label](const PF_ParamDef& def) { return sameLabel(def.name, label); });
    const bool isColor = std::any_of(params.begin(), params.end(), [color](const PF_ParamDef& def) {
        return def.param_type == PF_Param_COLOR && sameLabel(def.name, color);
    });
    if (isLabel || !isColor || kComponents.find(component) == std::string_view::npos) {
        return std::nullopt;
    }
    return Target{findSettable(params, color), component};
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

/// As a line of its own: the one of the effect's defaults file.
std::string section() {
    return '[' + defaultsSection() + ']';
}

/// None for a line that says nothing.
std::optional<Assignment> assignmentOf(const host::Session& session, std::string_view line) {
    const std::string_view inner = text::trimmed(line);
    if (inner.empty() || kSayNothing.find(inner.front()) != std::string_view::npos ||
        text::equalWithoutCase(inner, section())) {
        return std::nullopt;
    }
    if (inner.front() == '[') {
        throw text::Failure(text::FailureKind::kUsage,
                            "the section " + text::inQuotes(inner) + " is not " + section());
    }
    const std::size_t equals = inner.find('=');
    const bool isText = inner.find('\0') == std::string_view::npos;
    if (equals == std::string_view::npos || !isText) {
        throw text::Failure(text::FailureKind::kUsage,
                            "a line takes LABEL=VALUE, not " + text::inQuotes(inner));
    }
    const std::string_view label = text::trimmed(inner.substr(0, equals));
    const std::string_view value = inner.substr(equals + 1);
    if (const auto component = componentOf(session, label)) {
        return Assignment{*component, parseValue(componentDefinition(label), {}, value)};
    }
    const int index = findSettable(session.params(), label);
    return Assignment{{index, kWhole},
                      parseValue(definitionOf(session, index), session.choices(index), value)};
}

A_u_char& channelOf(PF_Pixel& color, char component) {
    switch (component) {
    case 'r':
        return color.red;
    case 'g':
        return color.green;
    case 'b':
        return color.blue;
    default:
        return color.alpha;
    }
}

void assign(host::Session& session, const Assignment& assignment) {
    const auto [index, component] = assignment.target;
    if (definitionOf(session, index).param_type != PF_Param_COLOR) {
        session.setValue(index, assignment.value);
        return;
    }
    auto color = std::get<PF_Pixel>(session.value(index));
    if (component == kWhole) {
        const A_u_char alpha = color.alpha;
        color = std::get<PF_Pixel>(assignment.value);
        color.alpha = alpha;
    } else {
        channelOf(color, component) = static_cast<A_u_char>(std::get<A_long>(assignment.value));
    }
    session.setValue(index, color);
}

/// What lines have set so far, each with its line.
class Assigned {
public:
    void note(const host::Session& session, const Target& target, int line) {
        const bool wholeColor =
            target.component == kWhole && definitionOf(session, target.index).param_type == PF_Param_COLOR;
        for (const char component :
             wholeColor ? std::string_view("rgb") : std::string_view(&target.component, 1)) {
            const auto [place, isNew] = lines_.emplace(std::pair(target.index, component), line);
            if (!isNew) {
                throw text::Failure(text::FailureKind::kUsage,
                                    text::inQuotes(definitionOf(session, target.index).name) +
                                        " was set in line " + std::to_string(place->second) + " already");
            }
        }
    }

    NamedParams indices() const {
        NamedParams named;
        for (const auto& [target, line] : lines_) {
            named.insert(target.first);
        }
        return named;
    }

private:
    std::map<std::pair<int, char>, int> lines_;
};

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
        const auto read = assignmentOf(session, line);
        return read && text::printable(line) == line && read->target.index == index &&
               same(read->value, value);
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

std::string linesOf(const host::Session& session, int index) {
    constexpr A_u_char kOpaque = 255;
    const std::string label = definitionOf(session, index).name;
    host::ParamValue value = session.value(index);
    std::string alphaLine;
    if (auto* color = std::get_if<PF_Pixel>(&value); color != nullptr && color->alpha != kOpaque) {
        alphaLine = label + ".a=" + std::to_string(std::exchange(color->alpha, kOpaque)) + '\n';
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

/// Told by its mark, or by zeros in every other byte, as ASCII has them there.
bool isUtf16(std::string_view text) {
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
        return true;
    }
    std::array<std::size_t, 2> zeros{}; // in bytes of even and of odd places
    for (std::size_t at = 0; at < text.size(); ++at) {
        zeros[at % 2] += text[at] == '\0' ? 1U : 0U;
    }
    constexpr std::size_t kLeastBytes = 4; // a shorter text has no setting
    return text.size() >= kLeastBytes && std::max(zeros[0], zeros[1]) > text.size() / 4 &&
           std::min(zeros[0], zeros[1]) == 0;
}

} // namespace

NamedParams applyParamsText(host::Session& session, std::string_view text, const std::string& name) {
    if (isUtf16(text)) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot read " + text::inQuotes(name) +
                                ": it is text in UTF-16, and settings are read in UTF-8; save it as that");
    }
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    Assigned assigned;
    for (int number = 1; !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        try {
            if (line.find('\r') != std::string_view::npos) {
                throw text::Failure(text::FailureKind::kUsage,
                                    "it holds a bare carriage return, which ends no line; lines end as on "
                                    "Linux or on Windows");
            }
            if (const auto assignment = assignmentOf(session, line)) {
                assigned.note(session, assignment->target, number);
                assign(session, *assignment);
            }
        } catch (const text::Failure& failure) {
            throw text::Failure(failure.kind(), text::inQuotes(name) + " line " + std::to_string(number) +
                                                    ": " + failure.what());
        }
    }
    return assigned.indices();
}

std::string paramsFileText(const host::Session& session) {
    return paramsFileText(session, [](int) { return true; });
}

std::string paramsFileText(const host::Session& session, const std::function<bool(int index)>& chosen) {
    std::string text;
    const int count = static_cast<int>(session.params().size());
    for (int index = 1; index < count; ++index) {
        if (isSettable(definitionOf(session, index)) && chosen(index)) {
            text += linesOf(session, index);
        }
    }
    return text;
}

} // namespace kovalune::render
