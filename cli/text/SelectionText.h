// What settings select and change in a picture: a note for each that does nothing, and the counts that the effect
// reports.
#pragma once

#include "cli/arguments/Arguments.h"
#include "effect/Kovalune.h"
#include "host/Session.h"
#include "render/ShotSettings.h"

#include <optional>
#include <string>
#include <vector>

namespace kovalune::cli {

/// A table, or JSON.
std::string selectionText(const host::Session& session, const std::optional<FrameReport>& counts,
                          const std::vector<std::string>& notes, bool json);

/// Of each pass of a frame, or of all frames together, with the values of `frame`, which the session takes. A single pass without
/// a name is as selectionText has it.
std::string reportText(host::Session& session, const render::ShotSettings& settings, int64_t frame,
                       const std::vector<std::optional<FrameReport>>& counts,
                       const std::vector<std::string>& notes, bool json);

/// What a pass's settings do not do, with its name before it where there are several. The session has its values.
std::vector<std::string> passNotes(const host::Session& session, const render::ShotSettings& settings,
                                   std::size_t pass, const std::optional<FrameReport>& counts);

/// Writes the notes to standard error, and that there are no counts unless a report says so.
void tellNotes(const std::vector<std::string>& notes, const std::optional<FrameReport>& counts,
               const ReportArguments& arguments);

/// Throws Failure if settings do nothing, as many as there are notes, and `arguments` are strict: `output` is then not to be
/// written. The report, which shows what is wrong, is printed before.
void checkStrict(std::size_t idleSettings, const ReportArguments& arguments, const std::string& output);

} // namespace kovalune::cli
