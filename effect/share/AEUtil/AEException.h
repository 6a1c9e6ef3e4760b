// The exceptions of the host support library, and the names of the host's error codes.
#pragma once

#include "hostapi/HostApi.h"

#include <exception>
#include <string>

#if defined(__GNUC__)
#define KOVALUNE_PRINTF_LIKE(text, arguments) __attribute__((__format__(__printf__, text, arguments)))
#else
#define KOVALUNE_PRINTF_LIKE(text, arguments)
#endif

namespace AEUtil {

/// The name of a host error code as messages show it: empty for 1 to 3, "unknown" for a code without a name.
const char* errorName(PF_Err code);

/// A host error code that travels as an exception, with a text that starts with the place in the source:
/// "file(line): message". File and line, and the message, are each cut at 2047 bytes.
class AEException : public std::exception {
public:
    AEException(PF_Err code, int line, const char* file, const char* format, ...) KOVALUNE_PRINTF_LIKE(5, 6);

    PF_Err code() const { return code_; }
    const char* what() const noexcept override { return text_.c_str(); }

private:
    PF_Err code_;
    std::string text_;
};

/// A failure of one of the operating system's calls; the same text, no host code. Frozen: nothing here throws it.
class Win32Exception : public std::exception {
public:
    Win32Exception(int line, const char* file, const char* format, ...) KOVALUNE_PRINTF_LIKE(4, 5);

    const char* what() const noexcept override { return text_.c_str(); }

private:
    std::string text_;
};

} // namespace AEUtil
