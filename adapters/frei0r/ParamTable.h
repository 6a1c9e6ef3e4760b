// The effect's parameters as a frei0r host gets them. Hosts and projects refer to them by place and by name: neither ever changes.
#pragma once

#include "adapters/frei0r/Interface.h"
#include "host/ParamValue.h"
#include "hostapi/HostApi.h"

#include <optional>
#include <string>
#include <vector>

namespace kovalune::frei0r {

/// Of the settings file and of all the effect's controls: known before the effect is asked, as some hosts want.
inline constexpr int kParamCount = 48;

/// The first, since ffmpeg goes by place and takes an empty field of a number for 0.
inline constexpr int kSettingsFile = 0;

struct Param {
    std::string name;
    std::string explanation;
    ParamType type = kString;
    int index = 0; ///< of the effect's parameter; 0: the settings file
    PF_ParamDef def{};
    std::vector<std::string> choices;
    host::ParamValue initial; ///< the factory's
};

/// All of them, made from the effect's registration at the first call of the process, which sets the effect up and leaves
/// locale and environment as they were. May be called on several threads. Throws text::Failure where the effect cannot be set up.
const std::vector<Param>& paramTable();

/// A number of the interface as the effect's value, in range: amounts to the nearest 1/1000 of their unit, whole numbers to the
/// nearest. Nothing for NaN.
std::optional<host::ParamValue> valueOfNumber(const Param& param, double number);

/// The other way.
double numberOfValue(const Param& param, const host::ParamValue& value);

PF_Pixel valueOfColor(const Color& color);
Color colorOfValue(const PF_Pixel& value);

} // namespace kovalune::frei0r
