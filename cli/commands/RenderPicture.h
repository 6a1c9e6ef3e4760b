// A picture through the effect with progress on the terminal, to be ended by Ctrl-C.
#pragma once

#include "cli/arguments/Arguments.h"
#include "cli/text/ProgressLine.h"
#include "render/FrameArea.h"
#include "render/OpenEffect.h"
#include "render/shots/SourceFrame.h"

#include <optional>
#include <string>

namespace kovalune::cli {

/// Tells on standard error that the file has disturbed its colours, if it has.
void noteLosses(const pictures::Picture& picture, const std::string& name);

/// Names on standard error what the file has and the picture has not, if anything; with `format`, also what a file of
/// that format cannot take over. And its losses.
void noteLeftOut(const shots::SourceFrame& source, std::optional<pictures::FileFormat> format = std::nullopt);

/// What the effect will report of the frame that the session's values make.
ProgressFrame progressFrame(const host::Session& session, const FrameArguments& arguments,
                            const std::string& title = {});

/// Throws Failure as render::renderFrame does, and Interruption for a frame that the user interrupted. `counts`, where it
/// is not null, is what the built-in effect reports.
host::Image renderPicture(render::OpenEffect& effect, const std::string& name, const host::Image& image,
                          const FrameArguments& arguments, ProgressLine& progress,
                          FrameReport* counts = nullptr, const render::FrameArea* area = nullptr);

} // namespace kovalune::cli
