#include "cli/text/Reporting.h"

#include "render/shots/EndingSignals.h"
#include "render/shots/SignalWatch.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

namespace kovalune::cli {

namespace {

int report(ExitCode code, const char* text) noexcept {
    tell(text);
    return static_cast<int>(code);
}

/// Takes no memory: '?' stands for what is not to reach a terminal.
void tellLetters(std::string_view text) noexcept {
    std::fputs("kovalune: ", stderr);
    for (const char letter : text) {
        const bool isControl = static_cast<unsigned char>(letter) < 0x20 || letter == 0x7f;
        std::fputc(isControl ? '?' : letter, stderr);
    }
    std::fputc('\n', stderr);
}

[[noreturn]] void end(const shots::Interruption& interruption) noexcept {
    // Ctrl-C ends the whole line of pipes, and who should read this may have gone first.
    std::signal(SIGPIPE, SIG_IGN);
    tell(interruption.what());
    shots::endBySignal(interruption.signalNumber());
}

} // namespace

void tell(std::string_view text) noexcept {
    try {
        std::fprintf(stderr, "kovalune: %s\n", text::printable(text).c_str());
    } catch (const std::bad_alloc&) {
        tellLetters(text);
    }
}

int reporting(const std::function<ExitCode()>& body) noexcept {
    try {
        return static_cast<int>(body());
    } catch (const text::Failure& failure) {
        return report(exitCodeOf(failure.kind()), failure.what());
    } catch (const shots::Interruption& interruption) {
        end(interruption);
    } catch (const std::bad_alloc&) {
        return report(ExitCode::kFile, "not enough memory");
    } catch (const std::exception& exception) {
        return report(ExitCode::kFile, exception.what());
    }
}

} // namespace kovalune::cli
