#include "effect/platform/ProfileFile.h"

#include "effect/platform/Ascii.h"

#include <cstddef>
#include <initializer_list>

namespace kovalune::platform {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kBlanks = " \t\r\v\f";

std::string_view withoutLeadingBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

std::string_view trimmed(std::string_view text) {
    text = withoutLeadingBlanks(text);
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::size_t byteOrderMarkSize(std::string_view text) {
    return text.substr(0, kByteOrderMark.size()) == kByteOrderMark ? kByteOrderMark.size() : 0;
}

enum class LineKind { kBlank, kOther, kSection, kKey };

// One line; the offsets count from the start of the text.
struct Line {
    LineKind kind = LineKind::kOther;
    std::string_view name;  // of a section or a key, trimmed
    std::string_view value; // of a key, trimmed
    std::size_t begin = 0;
    std::size_t valueBegin = 0; // of a key: after '=' and the blanks that follow it
    std::size_t contentEnd = 0; // before the line end
    std::size_t end = 0;        // after the line end
};

void classify(std::string_view text, Line& line) {
    const std::string_view whole = text.substr(line.begin, line.contentEnd - line.begin);
    const std::string_view content = trimmed(whole);
    if (content.empty()) {
        line.kind = LineKind::kBlank;
        return;
    }
    if (content.front() == ';') {
        return;
    }
    if (content.front() == '[') {
        const std::size_t close = content.find(']');
        if (close != std::string_view::npos) {
            line.kind = LineKind::kSection;
            line.name = trimmed(content.substr(1, close - 1));
            return;
        }
    }
    const std::size_t equals = whole.find('=');
    if (equals == std::string_view::npos) {
        return;
    }
    line.name = trimmed(whole.substr(0, equals));
    if (line.name.empty()) {
        return;
    }
    line.kind = LineKind::kKey;
    const std::string_view rest = whole.substr(equals + 1);
    line.value = trimmed(rest);
    line.valueBegin = line.contentEnd - withoutLeadingBlanks(rest).size();
}

class LineReader {
public:
    explicit LineReader(std::string_view text) : text_(text), position_(byteOrderMarkSize(text)) {}

    bool next(Line& line) {
        if (position_ >= text_.size()) {
            return false;
        }
        line = Line{};
        line.begin = position_;
        const std::size_t feed = text_.find('\n', position_);
        if (feed == std::string_view::npos) {
            line.end = line.contentEnd = text_.size();
        } else {
            line.end = feed + 1;
            line.contentEnd = feed > position_ && text_[feed - 1] == '\r' ? feed - 1 : feed;
        }
        classify(text_, line);
        position_ = line.end;
        return true;
    }

    // Reads on to the first section of that name and past its line, which it returns in `line`.
    bool enterSection(std::string_view name, Line& line) {
        while (next(line)) {
            if (line.kind == LineKind::kSection && equalButForCase(line.name, name)) {
                return true;
            }
        }
        return false;
    }

    // As next, but only up to the next section's line.
    bool nextInSection(Line& line) { return next(line) && line.kind != LineKind::kSection; }

private:
    std::string_view text_;
    std::size_t position_;
};

bool isKeyNamed(const Line& line, std::string_view name) {
    return line.kind == LineKind::kKey && equalButForCase(line.name, name);
}

bool hasLineBreak(std::string_view text) {
    return text.find_first_of("\r\n") != std::string_view::npos;
}

bool canStandInProfile(std::string_view section, std::string_view key, std::string_view value) {
    return !hasLineBreak(section) && section.find(']') == std::string_view::npos && !hasLineBreak(key) &&
           !key.empty() && key.find('=') == std::string_view::npos && key.front() != ';' &&
           key.front() != '[' && !hasLineBreak(value);
}

std::string joined(std::initializer_list<std::string_view> parts) {
    std::string result;
    for (const std::string_view part : parts) {
        result.append(part);
    }
    return result;
}

// The line end that the text up to an insertion point lacks: its last line may have none.
std::string_view missingLineEnd(std::string_view before) {
    const bool complete = before.size() == byteOrderMarkSize(before) || before.back() == '\n';
    return complete ? std::string_view{} : kLineEnd;
}

} // namespace

std::optional<std::string_view> findProfileValue(std::string_view text, std::string_view section,
                                                 std::string_view key) {
    const std::string_view name = trimmed(key);
    LineReader reader(text);
    Line line;
    if (!reader.enterSection(trimmed(section), line)) {
        return std::nullopt;
    }
    while (reader.nextInSection(line)) {
        if (isKeyNamed(line, name)) {
            return line.value;
        }
    }
    return std::nullopt;
}

int32_t profileValueAsInt(std::string_view value) {
    value = withoutLeadingBlanks(value);
    const bool negative = !value.empty() && value.front() == '-';
    if (negative || (!value.empty() && value.front() == '+')) {
        value.remove_prefix(1);
    }
    uint32_t number = 0;
    for (const char c : value) {
        if (c < '0' || c > '9') {
            break;
        }
        number = number * 10U + static_cast<uint32_t>(c - '0');
    }
    return static_cast<int32_t>(negative ? 0U - number : number);
}

std::string_view profileValueAsString(std::string_view value) {
    value = value.substr(0, value.find('\0'));
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

std::optional<std::string> withProfileValue(std::string_view text, std::string_view section,
                                            std::string_view key, std::string_view value) {
    section = trimmed(section);
    key = trimmed(key);
    if (!canStandInProfile(section, key, value)) {
        return std::nullopt;
    }
    LineReader reader(text);
    Line line;
    if (!reader.enterSection(section, line)) {
        return joined({text, missingLineEnd(text), "[", section, "]", kLineEnd, key, "=", value, kLineEnd});
    }
    std::size_t lastUsedEnd = line.end;
    while (reader.nextInSection(line)) {
        if (isKeyNamed(line, key)) {
            return joined({text.substr(0, line.valueBegin), value, text.substr(line.contentEnd)});
        }
        if (line.kind != LineKind::kBlank) {
            lastUsedEnd = line.end;
        }
    }
    const std::string_view before = text.substr(0, lastUsedEnd);
    return joined({before, missingLineEnd(before), key, "=", value, kLineEnd, text.substr(lastUsedEnd)});
}

std::string withoutProfileKey(std::string_view text, std::string_view section, std::string_view key) {
    const std::string_view name = trimmed(key);
    LineReader reader(text);
    Line line;
    if (!reader.enterSection(trimmed(section), line)) {
        return std::string(text);
    }
    std::string result;
    std::size_t copied = 0;
    while (reader.nextInSection(line)) {
        if (isKeyNamed(line, name)) {
            result.append(text.substr(copied, line.begin - copied));
            copied = line.end;
        }
    }
    return result.append(text.substr(copied));
}

std::string withoutProfileSection(std::string_view text, std::string_view section) {
    section = trimmed(section);
    std::string result(text.substr(0, byteOrderMarkSize(text)));
    LineReader reader(text);
    bool inside = false;
    for (Line line; reader.next(line);) {
        if (line.kind == LineKind::kSection) {
            inside = equalButForCase(line.name, section);
        }
        if (!inside) {
            result.append(text.substr(line.begin, line.end - line.begin));
        }
    }
    return result;
}

} // namespace kovalune::platform
