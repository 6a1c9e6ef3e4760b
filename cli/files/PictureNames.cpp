#include "cli/files/PictureNames.h"

#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

namespace kovalune::cli {

namespace {

struct Place {
    std::size_t start = 0;
    std::size_t size = 0;
};

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

/// Of "%d", "%4d" or "%04d".
std::optional<Place> printfPlace(std::string_view name) {
    const std::size_t start = name.find('%');
    if (start == std::string_view::npos) {
        return std::nullopt;
    }
    std::size_t end = start + 1;
    while (end < name.size() && isDigit(name[end])) {
        ++end;
    }
    if (end == name.size() || name[end] != 'd') {
        return std::nullopt;
    }
    return Place{start, end + 1 - start};
}

/// Where a name leaves room for a number; a single # may well belong to it.
std::optional<Place> numberPlace(std::string_view name) {
    const std::size_t start = name.find("##");
    if (start == std::string_view::npos) {
        return printfPlace(name);
    }
    const std::size_t end = std::min(name.find_first_not_of('#', start), name.size());
    return Place{start, end - start};
}

/// Such a name as the shell's pattern for all its numbers; any PNG where it would need quotes.
std::string patternOf(std::string_view name, const Place& number) {
    std::string pattern(name);
    pattern.replace(number.start, number.size, "*");
    const bool isPlain = std::all_of(pattern.begin(), pattern.end(), [](char letter) {
        return isDigit(letter) || (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
               std::string_view("*._-/").find(letter) != std::string_view::npos;
    });
    return isPlain && pattern.size() <= text::kMostShownBytes && pattern.front() != '-' ? pattern
                                                                                        : kAnyPicture;
}

/// The place of the number in a name that no file has.
std::optional<Place> openNumber(const std::string& name) {
    std::error_code error;
    return std::filesystem::exists(name, error) ? std::nullopt : numberPlace(name);
}

} // namespace

void checkNoStream(const std::string& name, const std::string& rule) {
    if (name == "-") {
        throw text::Failure(text::FailureKind::kUsage, rule + "; a file that is called '-' is './-'");
    }
}

std::string loopOver(std::string_view pattern, const std::string& command) {
    const std::string start = "for f in " + std::string(pattern) + "; do kovalune " + command + " \"$f\"";
    if (command == "colors") {
        return "; for several: " + start + "; done";
    }
    const bool makesPictures = command == "render" || command == "sheet" || command == "smooth";
    if (!makesPictures) {
        return {};
    }
    return "; for several: mkdir -p out; " + start + " -o \"out/" +
           (pattern.find('/') == std::string_view::npos ? "$f" : "${f##*/}") + "\"; done";
}

void checkReadName(const std::string& name, const std::string& command) {
    if (const std::optional<Place> number = openNumber(name)) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot read " + text::inQuotes(name) +
                                ": there is no such file, and one command takes one picture" +
                                loopOver(patternOf(name, *number), command));
    }
}

void checkDrawnName(const std::string& name, const std::string& command) {
    checkNoStream(name, "this picture is written to a file, not to the standard output");
    checkWriteName(name, command);
}

void checkWriteName(const std::string& name, const std::string& command) {
    if (openNumber(name)) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot write " + text::inQuotes(name) +
                                ": one command writes one picture, and puts no number into its name" +
                                loopOver(kAnyPicture, command));
    }
}

void checkParamsName(const std::string& name) {
    checkNoStream(name, "settings are read from a file, not from the standard input");
}

void checkParamsTarget(const std::string& name) {
    checkNoStream(name, "settings are written to a file, not to the standard output");
}

} // namespace kovalune::cli
