#include "effect/platform/posix/Process.h"

#include "effect/platform/Ascii.h"
#include "effect/platform/Platform.h"
#include "effect/platform/posix/File.h"

#include <algorithm>
#include <cstdlib>

namespace kovalune::platform {
namespace {

constexpr unsigned kCodePageUtf8 = 65001;

// Far above what systems allow for a command line.
constexpr std::size_t kCommandLineLimit = std::size_t{16} << 20;

// The locale's name for characters, in the order in which the system looks for it.
std::string_view localeName() {
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return {};
}

} // namespace

std::string commandLineFrom(const char* path) {
    std::string text;
    const FileDescriptor file = openForReading(path);
    if (!file.isOpen() || !readUpTo(file, kCommandLineLimit, text)) {
        return {};
    }
    if (!text.empty() && text.back() == '\0') {
        text.pop_back();
    }
    std::replace(text.begin(), text.end(), '\0', ' ');
    return text;
}

bool localeNameIsJapanese(std::string_view name) {
    const std::string_view language = name.substr(0, name.find_first_of("_.@"));
    return equalButForCase(language, "ja");
}

std::string commandLine() {
    return commandLineFrom("/proc/self/cmdline");
}

bool shiftKeyDown() {
    return false;
}

unsigned activeCodePage() {
    return localeNameIsJapanese(localeName()) ? kJapaneseCodePage : kCodePageUtf8;
}

} // namespace kovalune::platform
