#include "cli/StandardOutput.h"

#include "cli/Failure.h"

#include <cstdio>

namespace kovalune {

void printOut(std::string_view text) {
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (!written || std::fflush(stdout) != 0) {
        throw Failure(ExitCode::kFile, "cannot write to the standard output");
    }
}

} // namespace kovalune
