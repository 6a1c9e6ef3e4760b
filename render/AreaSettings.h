// Where a pass may work, as settings say it.
#pragma once

#include "render/FrameArea.h"

#include <optional>
#include <string>
#include <string_view>

namespace kovalune::render {

/// What of a mask's picture counts.
enum class MaskBy { kAlpha, kGrey };

struct AreaSettings {
    std::optional<std::string> mask; ///< a picture's name as it is opened, or a pattern
    std::optional<MaskBy> maskBy;    ///< otherwise alpha where the picture has it
    std::optional<bool> invert;
    std::optional<Region> region;
};

/// What `above` says in place of what `below` says.
void layOver(AreaSettings& below, const AreaSettings& above);

/// "X,Y,W,H"; throws Failure with `name`, of what takes it, for anything else and for a region without pixels.
Region parseRegion(std::string_view text, const std::string& name);

/// Sets what a line "Mask=FILE", "Mask By=alpha", "Invert Mask=on" or "Region=X,Y,W,H" says; false for another label. A file's
/// name counts from `folder`. Throws Failure for a value that is none.
bool takeAreaLine(AreaSettings& area, std::string_view label, std::string_view value,
                  const std::string& folder);

/// Such lines, whatever folder they are read in.
std::string areaText(const AreaSettings& area);

} // namespace kovalune::render
