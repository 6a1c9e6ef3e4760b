#include "effect/params/DefaultsFile.h"

#include "effect/params/ParamRegistry.h"
#include "effect/platform/Platform.h"
#include "effect/share/AEUtil/HostVersion.h"
#include "effect/share/StandardParts.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace kovalune {
namespace {

constexpr std::size_t kNumberTextBytes = 128;

} // namespace

std::string defaultsFileBelow(const std::string& folder) {
    const char separator = platform::kPathSeparator;
    return folder + separator + "ORVEL" + separator + "Tavik" + separator + "Kovalune.ini";
}

std::string colorKey(const char* label, char channel) {
    return std::string(label) + '.' + channel;
}

bool makeDefaultsPath(char (&buffer)[kDefaultsPathBytes]) {
    char folder[kDefaultsPathBytes];
    const bool found = platform::applicationDataFolder(folder, sizeof folder);
    const std::string path = found ? defaultsFileBelow(folder) : std::string();
    const bool fits = found && path.size() < sizeof buffer;
    std::memset(buffer, 0, sizeof buffer);
    if (fits) {
        std::memcpy(buffer, path.data(), path.size());
    }
    return fits;
}

RememberedDefaults::RememberedDefaults(const PF_InData* inData, const char* pathOrNull)
    : path_(AEUtil::hostIsOld(inData) ? nullptr : pathOrNull) {}

int32_t RememberedDefaults::integer(const char* key, int32_t fallback) const {
    if (path_ == nullptr) {
        return fallback;
    }
    return platform::profileInt(paramRegistry().sectionName(), key, fallback, path_);
}

double RememberedDefaults::number(const char* key, double fallback) const {
    if (path_ == nullptr) {
        return fallback;
    }
    return parseNumber(platform::profileString(paramRegistry().sectionName(), key,
                                               formatNumber(fallback).c_str(), kNumberTextBytes, path_));
}

bool rememberInteger(const char* key, int32_t value, const char* path) {
    return platform::writeProfileString(paramRegistry().sectionName(), key, std::to_string(value).c_str(),
                                        path);
}

bool rememberNumber(const char* key, double value, const char* path) {
    return platform::writeProfileString(paramRegistry().sectionName(), key, formatNumber(value).c_str(),
                                        path);
}

bool isRemembered(const char* key, const char* path) {
    const auto valueOr = [&](const char* fallback) {
        return platform::profileString(paramRegistry().sectionName(), key, fallback, kNumberTextBytes, path);
    };
    // Only a missing key gives the fallback each time.
    return valueOr("0") == valueOr("1");
}

double parseNumber(const std::string& text) {
    const std::size_t start = text.find_first_not_of(" \t");
    if (start == std::string::npos) {
        return 0.0;
    }
    const char* first = text.data() + start;
    const char* const last = text.data() + text.size();
    const bool plus = *first == '+' && last - first > 1 && first[1] != '-';
    double value = 0.0;
    fromChars(plus ? first + 1 : first, last, value);
    return std::isfinite(value) ? value : 0.0;
}

std::string formatNumber(double value) {
    // The longest double has 309 digits before its point.
    char text[std::numeric_limits<double>::max_exponent10 + 16];
    const std::to_chars_result result = toChars(text, text + sizeof text, value, std::chars_format::fixed, 6);
    return {text, result.ptr};
}

} // namespace kovalune
