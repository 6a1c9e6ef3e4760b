// A system that is none: without files, without a keyboard to ask and without a language, as a page in a browser. Profiles read as
// empty ones and cannot be written.
#include "effect/platform/Platform.h"

namespace kovalune::platform {
namespace {

constexpr unsigned kCodePageUtf8 = 65001;
constexpr int kNoSuchFile = 2;

} // namespace

std::string commandLine() {
    return {};
}

bool shiftKeyDown() {
    return false;
}

unsigned activeCodePage() {
    return kCodePageUtf8;
}

bool applicationDataFolder(char* buffer, std::size_t size) {
    if (size > 0) {
        buffer[0] = '\0';
    }
    return false;
}

int lastError() {
    return kNoSuchFile;
}

bool folderExists(const char* /*path*/) {
    return false;
}

bool nameIsTaken(const char* /*path*/) {
    return false;
}

bool createFolders(const char* /*path*/) {
    return false;
}

Deletion deleteFile(const char* /*path*/) {
    return Deletion::kMissing;
}

bool removeFolder(const char* /*path*/) {
    return false;
}

void* moduleOfFile(const char* /*path*/) {
    return nullptr;
}

int32_t profileInt(const char* /*section*/, const char* /*key*/, int32_t fallback, const char* /*file*/) {
    return fallback;
}

// The rules for a fallback hold here too.
std::string profileString(const char* /*section*/, const char* /*key*/, const char* fallback,
                          std::size_t maxChars, const char* /*file*/) {
    std::string text = fallback == nullptr ? "" : fallback;
    text.resize(text.find_last_not_of(' ') + 1);
    if (text.size() >= maxChars) {
        text.resize(maxChars == 0 ? 0 : maxChars - 1);
    }
    return text;
}

bool writeProfileString(const char* /*section*/, const char* /*key*/, const char* /*value*/,
                        const char* /*file*/) {
    return false;
}

} // namespace kovalune::platform
