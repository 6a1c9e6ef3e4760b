// The defaults file: what a user has made the defaults of new instances, one value a key. It lies in the
// user's folder for settings and is read only while the parameters are registered.
#pragma once

#include "effect/platform/Platform.h"
#include "hostapi/HostApi.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kovalune {

inline constexpr std::size_t kDefaultsPathBytes = platform::kPathBytes;

/// The key of one channel of a colour: 'r', 'g', 'b' or 'a'.
std::string colorKey(const char* label, char channel);

/// The file's path below the user's folder for settings.
std::string defaultsFileBelow(const std::string& folder);

/// Writes the file's path, ended, into `buffer`; neither the file nor its folders need exist. False, with an
/// empty text, where the system knows no folder for settings or the path does not fit.
[[nodiscard]] bool makeDefaultsPath(char (&buffer)[kDefaultsPathBytes]);

/// Reads remembered values, or gives the fall-back where there is none, no path was given or the host is too
/// old. Values are handed out as they stand, whatever the parameter's limits. The section is the registry's.
class RememberedDefaults {
public:
    RememberedDefaults(const PF_InData* inData, const char* pathOrNull);

    int32_t integer(const char* key, int32_t fallback) const;
    /// Decimal point whatever the locale; a text that is no number gives 0.0.
    double number(const char* key, double fallback) const;

private:
    const char* path_;
};

/// Write one value. False if the file could not be written.
[[nodiscard]] bool rememberInteger(const char* key, int32_t value, const char* path);
/// Six digits after a decimal point, whatever the locale.
[[nodiscard]] bool rememberNumber(const char* key, double value, const char* path);

/// Whether the file has a value for the key in the registry's section, whatever it says.
bool isRemembered(const char* key, const char* path);

/// The number at the start of a text: blanks, a sign, digits with a decimal point and an exponent. Reading
/// stops at the first character that it can't use; nothing usable, or no
/// finite number, is 0.0.
double parseNumber(const std::string& text);

/// A number as the defaults file holds it.
std::string formatNumber(double value);

} // namespace kovalune
