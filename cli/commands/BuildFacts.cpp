#include "cli/commands/BuildFacts.h"

#include "effect/Kovalune.h"
#include "pictures/LibraryVersions.h"
#include "render/shots/Machine.h"

#include <sys/utsname.h>

#include <fstream>
#include <string>

namespace kovalune::cli {

namespace {

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

} // namespace

BuildFacts buildFacts() {
    return {KOVALUNE_VERSION,
            compilerText(),
            KOVALUNE_BUILD_TYPE,
            pictures::pictureLibraries(),
            systemText(),
            processorName(),
            instructionSet(),
            instructionSets(),
            static_cast<unsigned>(shots::usableProcessors())};
}

} // namespace kovalune::cli
