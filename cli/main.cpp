// The command `kovalune`: parses the command line and runs what it asks for.

#include "cli/Arguments.h"
#include "cli/Failure.h"
#include "cli/ParamsCommand.h"
#include "cli/RenderCommand.h"
#include "cli/Reporting.h"

#include <csignal>
#include <cstdio>

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

} // namespace

int main(int argc, char** argv) {
#ifdef SIGXFSZ
    // A file that grows past the limit is then an error of the write, which removes what was written.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    return reporting([argc, argv] { run(parseArguments(argc, argv)); });
}
