// What settings do not do: a note for each that selects or changes nothing.
#pragma once

#include "effect/Kovalune.h"
#include "host/Session.h"
#include "render/Settings.h"

#include <optional>
#include <string>
#include <vector>

namespace kovalune::render {

/// A line for each named setting that is switched off without a word, for the view of a stage that is off,
/// for each enabled colour that selects nothing and for each stage that "Keep Process" leaves nothing. `counts`: none
/// from an effect that does not report.
std::vector<std::string> selectionNotes(const host::Session& session, const NamedParams& named,
                                        const std::optional<FrameReport>& counts);

} // namespace kovalune::render
