#include "cli/files/PictureNames.h"

#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace kovalune::cli {

namespace {

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

/// "%d", "%4d" or "%04d".
bool hasPrintfPlace(std::string_view name) {
    const auto start = std::find(name.begin(), name.end(), '%');
    const auto end = std::find_if_not(start == name.end() ? start : start + 1, name.end(), isDigit);
    return end != name.end() && *end == 'd';
}

/// Room for a number; a single # may well belong to the name.
bool hasNumberPlace(std::string_view name) {
    return name.find("##") != std::string_view::npos || hasPrintfPlace(name);
}

/// A loop of the shell, for a command that makes something of each picture.
std::string loopOver(const std::string& command) {
    const std::string start = "for f in *.png; do kovalune " + command + " \"$f\"";
    if (command == "colors") {
        return "; for several: " + start + "; done";
    }
    return command == "sheet" ? "; for several: mkdir -p out; " + start + " -o \"out/$f\"; done"
                              : std::string();
}

/// Whether no file has the name, and it has a place for a number.
bool isOpen(const std::string& name) {
    std::error_code error;
    return !std::filesystem::exists(name, error) && hasNumberPlace(name);
}

} // namespace

void checkNoStream(const std::string& name, const std::string& rule) {
    if (name == "-") {
        throw text::Failure(text::FailureKind::kUsage, rule + "; a file that is called '-' is './-'");
    }
}

void checkReadName(const std::string& name, const std::string& command) {
    if (isOpen(name)) {
        throw text::Failure(text::FailureKind::kFile, "cannot read " + text::inQuotes(name) +
                                                          ": there is no such file, and 'kovalune " +
                                                          command + "' takes one picture");
    }
}

void checkDrawnName(const std::string& name, const std::string& command) {
    checkNoStream(name, "this picture is written to a file, not to the standard output");
    checkWriteName(name, command);
}

void checkWriteName(const std::string& name, const std::string& command) {
    if (isOpen(name)) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot write " + text::inQuotes(name) +
                                ": one command writes one picture, and puts no number into its name" +
                                loopOver(command));
    }
}

void checkParamsName(const std::string& name) {
    checkNoStream(name, "settings are read from a file, not from the standard input");
}

void checkParamsTarget(const std::string& name) {
    checkNoStream(name, "settings are written to a file, not to the standard output");
}

} // namespace kovalune::cli
