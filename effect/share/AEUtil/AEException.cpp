#include "effect/share/AEUtil/AEException.h"

#include <array>
#include <cstdarg>
#include <cstdio>

namespace AEUtil {
namespace {

constexpr std::size_t kPieceBytes = 2048;

std::string sourcePlace(int line, const char* file) {
    std::array<char, kPieceBytes> piece{};
    std::snprintf(piece.data(), piece.size(), "%s(%d): ", file, line);
    return piece.data();
}

std::string formatPiece(const char* format, va_list arguments) KOVALUNE_PRINTF_LIKE(1, 0);

std::string formatPiece(const char* format, va_list arguments) {
    std::array<char, kPieceBytes> piece{};
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the caller's is begun
    std::vsnprintf(piece.data(), piece.size(), format, arguments);
    return piece.data();
}

} // namespace

const char* errorName(PF_Err code) {
    static constexpr std::array<const char*, 5> kLow = {"PF_Err_NONE", "", "", "", "PF_Err_OUT_OF_MEMORY"};
    static constexpr std::array<const char*, 7> kHigh = {
        "PF_Err_INTERNAL_STRUCT_DAMAGED",   "PF_Err_INVALID_INDEX",      "PF_Err_UNRECOGNIZED_PARAM_TYPE",
        "PF_Err_INVALID_CALLBACK",          "PF_Err_BAD_CALLBACK_PARAM", "PF_Interrupt_CANCEL",
        "PF_Err_CANNOT_PARSE_KEYFRAME_TEXT"};
    constexpr PF_Err kFirstHigh = PF_Err_INTERNAL_STRUCT_DAMAGED;
    if (code >= 0 && code < static_cast<PF_Err>(kLow.size())) {
        return kLow[static_cast<std::size_t>(code)];
    }
    if (code >= kFirstHigh && code < kFirstHigh + static_cast<PF_Err>(kHigh.size())) {
        return kHigh[static_cast<std::size_t>(code - kFirstHigh)];
    }
    return "unknown";
}

AEException::AEException(PF_Err code, int line, const char* file, const char* format, ...)
    : code_(code), text_(sourcePlace(line, file)) {
    va_list arguments;
    va_start(arguments, format);
    text_ += formatPiece(format, arguments);
    va_end(arguments);
}

Win32Exception::Win32Exception(int line, const char* file, const char* format, ...)
    : text_(sourcePlace(line, file)) {
    va_list arguments;
    va_start(arguments, format);
    text_ += formatPiece(format, arguments);
    va_end(arguments);
}

} // namespace AEUtil
