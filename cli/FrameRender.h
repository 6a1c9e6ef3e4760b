// A picture of a file through the effect of a session: in the depth, by the road and with the proxy factor that
// the command line names, with progress on the terminal, and to be ended by Ctrl-C.
#pragma once

#include "cli/Arguments.h"
#include "cli/OpenEffect.h"
#include "cli/ProgressLine.h"
#include "cli/picture/PictureConversion.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kovalune {

/// A picture as its file holds it and as the effect gets it.
struct SourceFrame {
    std::string name; ///< for messages
    Picture picture;
    host::Image image;
};

/// Throws Failure for a file that cannot be read.
SourceFrame readFrame(const std::string& file, const FrameArguments& arguments);

/// Of the picture that is written to a file of this format.
PictureForm outputForm(const Picture& source, FileFormat format, const FrameArguments& arguments);

/// Names on standard error what the file has and the picture has not, if anything; with `format`, also what a file of
/// that format cannot take over.
void noteLeftOut(const SourceFrame& source, std::optional<FileFormat> format = std::nullopt);

/// What the effect will report of the frame that the session's values make.
ProgressFrame progressFrame(const host::Session& session, const FrameArguments& arguments,
                            const std::string& title = {});

/// For ProgressLine.
uint64_t pixelsOf(const SourceFrame& source);

/// Throws Failure if the effect cannot work in this depth, reports an error or finds too little memory, host and effect
/// alike, and Interruption for a frame that the user interrupted. `counts`, where it is not null, is what the built-in
/// effect reports.
host::Image renderFrame(OpenEffect& effect, const SourceFrame& source, const FrameArguments& arguments,
                        ProgressLine& progress, FrameReport* counts = nullptr);

} // namespace kovalune
