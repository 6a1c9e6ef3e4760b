#include "cli/Commands.h"

#include "cli/text/EffectFlags.h"
#include "effect/Kovalune.h"
#include "hostapi/Constants.h"
#include "pictures/LibraryVersions.h"
#include "render/OpenEffect.h"
#include "text/MessageText.h"

#include <sys/utsname.h>

#include <fstream>
#include <string_view>
#include <thread>
#include <vector>

namespace kovalune::cli {

namespace {

constexpr std::size_t kTitleWidth = 16;

std::string padded(const std::string& title) {
    return title + std::string(kTitleWidth - title.size(), ' ');
}

std::string lineOf(const std::string& title, const std::string& value) {
    std::string line = padded(title) + text::printable(value);
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

/// The title stands before the first line only.
std::string linesOf(const std::string& title, const std::vector<std::string>& values) {
    std::string text;
    for (const std::string& value : values) {
        text += lineOf(text.empty() ? title : "", value);
    }
    return text.empty() ? lineOf(title, "none") : text;
}

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

std::string flagsText(const std::string& title, A_long flags, const std::vector<std::string>& names) {
    return lineOf(title, hexNumber(static_cast<A_u_long>(flags))) +
           (names.empty() ? std::string() : linesOf("", names));
}

std::string depthsText(const host::Session& session) {
    std::string text = "8";
    if ((session.outFlags() & PF_OutFlag_DEEP_COLOR_AWARE) != 0) {
        text += ", 16";
    }
    if ((session.outFlags2() & PF_OutFlag2_FLOAT_COLOR_AWARE) != 0) {
        text += ", 32 (float)";
    }
    return text + " bits a channel";
}

std::string effectText(const InfoArguments& arguments) {
    render::OpenEffect effect(arguments.plugin);
    host::Session& session = effect.session();
    const host::CommandResult about = session.about();
    render::requireSuccess(about, "the effect's about text");
    const A_u_long version = session.effectVersion();
    const bool smart = (session.outFlags2() & PF_OutFlag2_SUPPORTS_SMART_RENDER) != 0;
    return lineOf("Effect", arguments.plugin ? *arguments.plugin : "built in") +
           linesOf("About", linesIn(about.returnMsg)) +
           lineOf("Effect version", versionText(version) + " (" + hexNumber(version) + ")") +
           flagsText("Out flags", session.outFlags(), outFlagNames(session.outFlags())) +
           flagsText("Out flags 2", session.outFlags2(), outFlag2Names(session.outFlags2())) +
           lineOf("Depths", depthsText(session)) + lineOf("Smart render", smart ? "yes" : "no");
}

std::string compilerText() {
#ifdef __clang__
    return "Clang " __clang_version__;
#else
    return "GCC " __VERSION__;
#endif
}

std::string systemText() {
    utsname names{};
    if (uname(&names) != 0) {
        return "unknown";
    }
    return std::string(names.sysname) + ' ' + names.release + ' ' + names.machine;
}

/// As the system describes the first one, where it does.
std::string processorName() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        const std::size_t colon = line.find(": ");
        if (line.starts_with("model name") && colon != std::string::npos) {
            return line.substr(colon + 2);
        }
    }
    return "unknown";
}

/// "avx2 (of plain, sse2, avx2)"
std::string instructionsText() {
    std::string all;
    for (const std::string& set : instructionSets()) {
        all += (all.empty() ? "" : ", ") + set;
    }
    return instructionSet() + " (of " + all + ")";
}

std::string threadsText() {
    const unsigned threads = std::thread::hardware_concurrency();
    return threads == 0 ? "unknown" : std::to_string(threads);
}

std::string buildText() {
    std::vector<std::string> libraries;
    for (const pictures::LibraryVersion& library : pictures::pictureLibraries()) {
        libraries.push_back(library.name + ' ' + library.version);
    }
    return lineOf("Command version", KOVALUNE_VERSION) + lineOf("Compiler", compilerText()) +
           lineOf("Build type", KOVALUNE_BUILD_TYPE) + linesOf("Libraries", libraries) +
           lineOf("System", systemText()) + lineOf("Processor", processorName()) +
           lineOf("Instructions", instructionsText()) + lineOf("Threads", threadsText());
}

} // namespace

std::string infoText(const InfoArguments& arguments) {
    return effectText(arguments) + buildText();
}

} // namespace kovalune::cli
