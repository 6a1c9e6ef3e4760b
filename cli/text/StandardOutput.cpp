#include "cli/text/StandardOutput.h"

#include "text/Failure.h"
#include "text/MessageText.h"

#include <cerrno>
#include <cstdio>

namespace kovalune::cli {

namespace {

bool wordsGoToError = false;

} // namespace

void leaveOutputToPictures() {
    wordsGoToError = true;
}

void printOut(std::string_view text) {
    std::FILE* const stream = wordsGoToError ? stderr : stdout;
    const bool written = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    if (!written || std::fflush(stream) != 0) {
        const int error = errno;
        throw text::Failure(text::FailureKind::kFile,
                            "cannot write to the standard output: " + text::systemReason(error));
    }
}

} // namespace kovalune::cli
