#include "cli/arguments/UsageFailure.h"

#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"
#include "text/NearestNames.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace kovalune::cli {

namespace {

/// Ends the messages that tell nothing else to write.
std::string usageHint(const std::string& command) {
    return "; 'kovalune " + (command.empty() ? "" : command + ' ') + "--help' shows the usage";
}

[[noreturn]] void fail(const std::string& text) {
    throw text::Failure(text::FailureKind::kUsage, text);
}

/// Of the names, one that the word begins, or else the nearest; empty if none is near.
std::string meantBy(const std::string& word, const std::vector<std::string>& names) {
    constexpr std::size_t kLeast = 4; // "--o" may be anything
    for (const std::string& name : names) {
        if (word.size() >= kLeast && name.starts_with(word)) {
            return name;
        }
    }
    const std::vector<std::string> near = text::nearestNames(word, names, 1);
    return near.empty() ? "" : near.front();
}

/// A question if something may have been meant, else the hint.
std::string suggestion(const std::string& word, const std::vector<std::string>& names,
                       const std::string& command) {
    const std::string meant = meantBy(word, names);
    return meant.empty() ? usageHint(command) : "; did you mean " + text::inQuotes(meant) + "?";
}

/// The short name that a word begins with, its value may follow in the same word; empty if there is none.
std::string shortNameIn(const std::string& word, const CommandSyntax& command) {
    for (const std::string& name : command.shortNames()) {
        if (word.starts_with(name)) {
            return name;
        }
    }
    return {};
}

/// The parser knows the command's options after it alone, so one of them here stood in front of it.
[[noreturn]] void failUnknownOption(const CommandSyntax& command, const std::string& word) {
    const std::string name = word.substr(0, word.find('='));
    const std::vector<std::string> names = command.optionNames();
    const bool isLong = std::find(names.begin(), names.end(), name) != names.end();
    const std::string known = isLong ? name : shortNameIn(word, command);
    if (!known.empty()) {
        fail("options stand behind the command: kovalune " + command.name() + ' ' + known);
    }
    fail("'kovalune " + command.name() + "' has no option " + text::inQuotes(name) +
         suggestion(name, names, command.name()));
}

/// Words that are neither options nor have a place.
[[noreturn]] void failExtra(const CommandSyntax& command, const std::vector<std::string>& words) {
    const std::string name = command.name();
    fail("'kovalune " + name + "' takes no " + text::inQuotes(words.front()) + " here" + usageHint(name));
}

/// The option had too many values or none.
[[noreturn]] void failCount(const CommandSyntax& command, const std::string& text) {
    const std::string name = text.substr(0, text.find(':'));
    const std::optional<std::size_t> count = command.timesGiven(name);
    const std::string hint = usageHint(command.name());
    if (!count) {
        fail(text + hint);
    }
    if (*count > 1) {
        fail(name + " was given " + (*count == 2 ? "twice" : std::to_string(*count) + " times") +
             ", and counts once" + hint);
    }
    fail(name + " needs a value behind it" + hint);
}

/// An option without a value was given one: "Could not convert: --quiet = loud".
[[noreturn]] void failFlag(std::string_view text) {
    const std::size_t start = std::min(text.find('-'), text.size());
    fail(std::string(text.substr(start, text.find(' ', start) - start)) + " takes no value");
}

/// The value of "--set VALUE" or "--set=VALUE" at this place, and the place after it.
struct Setting {
    std::string_view value;
    std::size_t behind = 0;
};

bool settingAt(std::span<const char* const> words, std::size_t at, Setting& setting) {
    constexpr std::string_view kJoined = "--set=";
    const std::string_view word = words[at];
    if (word == "--set" && at + 1 < words.size()) {
        setting = {words[at + 1], at + 2};
    } else if (word.starts_with(kJoined)) {
        setting = {word.substr(kJoined.size()), at + 1};
    } else {
        return false;
    }
    return true;
}

/// What a setting was before the shell cut it at its blanks; empty if it is whole.
std::string uncut(std::span<const char* const> words, const Setting& setting) {
    constexpr std::size_t kMostWords = 6; // as in "1 : Boundary Blur = 3"
    std::string text(setting.value);
    if (text.find('=') != std::string::npos) {
        return {};
    }
    const std::size_t end = std::min(words.size(), setting.behind + kMostWords);
    for (std::size_t at = setting.behind; at < end && words[at][0] != '-'; ++at) {
        text += ' ' + std::string(words[at]);
        if (text.find('=') != std::string::npos) {
            return text.back() == '=' && at + 1 < words.size() ? text + ' ' + words[at + 1] : text;
        }
    }
    return {};
}

/// Whether a choice "Process 1" was cut after its word.
bool isCutProcess(std::string_view value, std::span<const char* const> words, std::size_t behind) {
    constexpr std::string_view kProcess = "process";
    const std::string folded = text::foldedCase(value);
    if (!folded.ends_with(kProcess) || behind >= words.size()) {
        return false;
    }
    const std::string_view next = words[behind];
    return next.size() == 1 && next.front() >= '1' && next.front() <= '4';
}

} // namespace

void checkQuotes(std::span<const char* const> words) {
    constexpr char kReason[] = " takes one word, so what has blanks needs quotes: ";
    for (std::size_t at = 1; at < words.size() && std::string_view(words[at]) != "--"; ++at) {
        Setting setting;
        if (settingAt(words, at, setting)) {
            std::string whole = uncut(words, setting);
            if (whole.empty() && isCutProcess(setting.value, words, setting.behind)) {
                whole = std::string(setting.value) + ' ' + words[setting.behind];
            }
            if (!whole.empty()) {
                fail("--set" + std::string(kReason) + "--set \"" + text::shown(whole) + '"');
            }
        } else if (std::string_view(words[at]) == "--view" && at + 2 < words.size() &&
                   isCutProcess(words[at + 1], words, at + 2)) {
            fail("--view" + std::string(kReason) + "--view \"" + text::shown(words[at + 1]) + ' ' +
                 words[at + 2] + '"');
        }
    }
}

void failUnknownCommand(const Parser& parser, const std::string& word) {
    std::vector<std::string> names = parser.commandNames();
    for (const std::string& name : parser.optionNames()) {
        names.push_back(name);
    }
    fail("there is no command or option " + text::inQuotes(word) + suggestion(word, names, {}));
}

void failUsage(const Parser& parser, const ParseResult& result) {
    const std::vector<std::string> unknown = parser.unknownWords();
    const std::optional<CommandSyntax> used = parser.usedCommand();
    if (!used && !unknown.empty()) {
        failUnknownCommand(parser, unknown.front());
    }
    const auto option = std::find_if(unknown.begin(), unknown.end(), [](const std::string& word) {
        return word.size() > 1 && word.front() == '-' && word != "--";
    });
    if (used && option != unknown.end()) {
        failUnknownOption(*used, *option);
    }
    if (used && !unknown.empty()) {
        failExtra(*used, unknown);
    }
    if (used && result.end == ParseEnd::kWrongCount) {
        failCount(*used, result.text);
    }
    if (result.end == ParseEnd::kWrongFlag) {
        failFlag(result.text);
    }
    fail(result.text + usageHint(used ? used->name() : ""));
}

} // namespace kovalune::cli
