// The effect's parameters as an OpenFX host gets them: one list, in the order that hosts show, whose names are what saved
// projects refer to.
#pragma once

#include "host/ParamValue.h"
#include "host/Session.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kovalune::openfx {

struct Control {
    enum class Kind : uint8_t { kGroup, kWhole, kNumber, kCheckBox, kColor, kChoice };

    Kind kind = Kind::kGroup;
    int index = 0; ///< of the effect's parameter; 0: a group, or the adapter's own
    std::string name;
    std::string label;
    std::string parent; ///< a group's name, or empty
    std::string hint;
    host::ParamValue initial; ///< of the effect's own
    // Of numbers.
    double lowest = 0.0;
    double highest = 0.0;
    double shownLowest = 0.0; ///< ends of the slider
    double shownHighest = 0.0;
    int digits = 0;
    // Of choices, without those that cannot be made: the label of each and the effect's value for it.
    std::vector<std::string> choices;
    std::vector<A_long> choiceValues;
};

/// What pixel values are: as they are, or linear light. The adapter's own choice, the last in the list.
inline constexpr std::string_view kPixelValues = "pixelValues";
inline constexpr int kLinearLight = 1; ///< its choice, counted from 0

/// Of the popup that decides what is shown; what clips are like depends on it.
inline constexpr char kViewName[] = "view";

/// Letters and digits: the words of the label, without the stage's number before a colon, after the name of the group.
/// "Blur Amount" in "base" is "baseBlurAmount".
std::string nameOf(std::string_view label, std::string_view group);

/// Of the effect that the session has set up.
std::vector<Control> controlsOf(const host::Session& session);

} // namespace kovalune::openfx
