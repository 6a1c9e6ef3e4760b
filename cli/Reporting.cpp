#include "cli/Reporting.h"

#include <cstdio>
#include <exception>
#include <new>

namespace kovalune {

namespace {

int report(ExitCode code, const char* text) noexcept {
    try {
        std::fprintf(stderr, "kovalune: %s\n", printable(text).c_str());
    } catch (const std::bad_alloc&) {
        std::fputs("kovalune: not enough memory\n", stderr);
    }
    return static_cast<int>(code);
}

} // namespace

int reporting(const std::function<ExitCode()>& body) noexcept {
    try {
        return static_cast<int>(body());
    } catch (const Failure& failure) {
        return report(failure.code(), failure.what());
    } catch (const std::bad_alloc&) {
        return report(ExitCode::File, "not enough memory");
    } catch (const std::exception& exception) {
        return report(ExitCode::File, exception.what());
    }
}

} // namespace kovalune
