#include "cli/Reporting.h"

#include "cli/Interrupt.h"
#include "cli/SignalAction.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

namespace kovalune {

namespace {

int report(ExitCode code, const char* text) noexcept {
    tell(text);
    return static_cast<int>(code);
}

[[noreturn]] void end(const Interruption& interruption) noexcept {
    // Ctrl-C ends the whole line of pipes, and who should read this may have gone first.
    std::signal(SIGPIPE, SIG_IGN);
    tell(interruption.what());
    endBySignal(interruption.signalNumber());
}

} // namespace

void tell(std::string_view text) noexcept {
    try {
        std::fprintf(stderr, "kovalune: %s\n", printable(text).c_str());
    } catch (const std::bad_alloc&) {
        std::fputs("kovalune: not enough memory\n", stderr);
    }
}

int reporting(const std::function<ExitCode()>& body) noexcept {
    try {
        return static_cast<int>(body());
    } catch (const Failure& failure) {
        return report(failure.code(), failure.what());
    } catch (const Interruption& interruption) {
        end(interruption);
    } catch (const std::bad_alloc&) {
        return report(ExitCode::kFile, "not enough memory");
    } catch (const std::exception& exception) {
        return report(ExitCode::kFile, exception.what());
    }
}

} // namespace kovalune
