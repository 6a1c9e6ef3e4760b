// What the command tells its caller at its end.
#pragma once

#include "text/Failure.h"

namespace kovalune::cli {

enum class ExitCode {
    kSuccess = 0,
    kDifferent = 1, ///< compared pictures are not the same, frames are missing, or nothing was found
    kUsage = 2,     ///< the command line, its labels and values
    kFile = 3,      ///< anything about a file, the lack of memory for a picture included
    kEffect = 4,    ///< what the effect reported
};

constexpr ExitCode exitCodeOf(text::FailureKind kind) {
    switch (kind) {
    case text::FailureKind::kUsage:
        return ExitCode::kUsage;
    case text::FailureKind::kFile:
        return ExitCode::kFile;
    default:
        return ExitCode::kEffect;
    }
}

} // namespace kovalune::cli
