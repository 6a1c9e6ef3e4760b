#include "cli/text/StandardOutput.h"

#include "text/Failure.h"

#include <cstdio>

namespace kovalune::cli {

void printOut(std::string_view text) {
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (!written || std::fflush(stdout) != 0) {
        throw text::Failure(text::FailureKind::kFile, "cannot write to the standard output");
    }
}

} // namespace kovalune::cli
