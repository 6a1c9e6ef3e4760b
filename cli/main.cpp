// The command `kovalune`: parses the command line, runs what it asks for, and reports a failure as one line
// on standard error with an exit code that tells whose it is.

#include "cli/Arguments.h"
#include "cli/Failure.h"
#include "cli/ParamsCommand.h"
#include "cli/RenderCommand.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

namespace {

using namespace kovalune;

void print(const std::string& text) {
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (!written || std::fflush(stdout) != 0)
        throw Failure(ExitCode::File, "cannot write to the standard output");
}

void run(const Arguments& arguments) {
    if (const auto* render = std::get_if<RenderArguments>(&arguments))
        runRender(*render);
    else if (const auto* params = std::get_if<ParamsArguments>(&arguments))
        print(paramsText(*params));
    else
        print(std::get<ShownText>(arguments).text);
}

int report(ExitCode code, const char* text) noexcept {
    try {
        std::fprintf(stderr, "kovalune: %s\n", printable(text).c_str());
    } catch (const std::bad_alloc&) {
        std::fputs("kovalune: not enough memory\n", stderr);
    }
    return static_cast<int>(code);
}

} // namespace

int main(int argc, char** argv) {
#ifdef SIGXFSZ
    // A file that grows past the limit is then an error of the write, which removes what was written.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    try {
        run(parseArguments(argc, argv));
        return static_cast<int>(ExitCode::Success);
    } catch (const Failure& failure) {
        return report(failure.code(), failure.what());
    } catch (const std::bad_alloc&) {
        return report(ExitCode::File, "not enough memory");
    } catch (const std::exception& exception) {
        return report(ExitCode::Effect, exception.what());
    }
}
