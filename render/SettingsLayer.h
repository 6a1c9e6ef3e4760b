// Settings that belong together: those of one file, or those of a command line.
//
// A file's lines are settings, blank, or comments (';' or '#' first). Lines before the first "[Pass NAME]" count in every pass,
// below the pass's own; a name met again continues its pass. The defaults file of the effect is such a file too, with its
// section's name and its colours as one line a component ("Color 1.r=3"). Lines may say where a pass may work, as takeAreaLine
// has it.
#pragma once

#include "render/AreaSettings.h"
#include "render/SettingLine.h"

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kovalune::render {

/// What a layer says of one parameter or component: one value, or one for each of some frames.
struct SettingTrack {
    host::ParamValue constant;
    std::map<int64_t, host::ParamValue> keys; ///< empty: `constant` counts

    bool isKeyed() const { return !keys.empty(); }
};

/// A colour as a whole is its components 'r', 'g' and 'b' here.
using SettingTracks = std::map<SettingTarget, SettingTrack>;

struct PassSettings {
    std::string name;
    SettingTracks tracks;
    AreaSettings area;
};

struct SettingsLayer {
    PassSettings common;              ///< of all passes; without a name
    std::vector<PassSettings> passes; ///< in the order that they came up in

    bool hasKeys() const;
};

/// Throws Failure with `name`, that of its file, if the text is in UTF-16, with the line's number too for an unknown label, a
/// value that the parameter does not take, a carriage return within the line, a section that is none, a version that is not
/// known, and a label that was set before: twice for all frames or for one, or both for all and for one.
SettingsLayer parseSettingsText(const host::Session& session, std::string_view text, const std::string& name);

/// "LABEL=VALUE", "LABEL@FRAME=VALUE", and for a single pass "[NAME] LABEL=VALUE". Of two that say the same for all frames the
/// later one counts; otherwise as for a file.
SettingsLayer parseSettingOptions(const host::Session& session, std::span<const std::string> options);

} // namespace kovalune::render
