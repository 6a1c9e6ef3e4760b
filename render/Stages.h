// The effect's stages as tools know them: by the labels of their controls. 0 is Base, 1 to 4 are Process 1
// to 4. An effect from a file may have others.
#pragma once

#include "effect/Kovalune.h"
#include "host/Session.h"
#include "render/FrameRequest.h"

#include <cstddef>
#include <optional>
#include <string>

namespace kovalune::render {

/// A proxy's factor as hosts have it.
PF_RationalScale scaleOf(const Fraction& fraction);

/// "Base", "Process 1"
std::string stageName(std::size_t stage);

/// Of the check box that switches a Process stage on: "1 : Enable Process". Base has none.
std::string stageSwitch(std::size_t stage);

/// "Color 2"; of a Process stage, which has only colour 0, "1 : Color".
std::string colorLabel(std::size_t stage, std::size_t color);

/// "Enable 2"; of a Process stage that of the stage.
std::string colorSwitch(std::size_t stage, std::size_t color);

/// How many colours a stage has.
std::size_t colorsOf(std::size_t stage);

/// The value of the colour with this label, "#RRGGBB"; empty where the effect has no such parameter.
std::string colorText(const host::Session& session, const std::string& label);

/// Nothing where the effect has no such check box.
std::optional<bool> isOn(const host::Session& session, const std::string& checkBox);

/// The stage that a view of this name is about where that is switched off: the view shows nothing of it.
std::optional<std::size_t> offStageOf(const host::Session& session, const std::string& view);

/// What a frame of the session's values will report of its progress; nothing where a control is missing.
std::optional<ProgressSettings> progressSettings(const host::Session& session, const Downsample& downsample);

} // namespace kovalune::render
