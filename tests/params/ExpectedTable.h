// The effect's parameters written down a second time, as a user of the host sees them: what the tests hold
// the table to. One row a parameter, in the host's order from index 1.
#pragma once

#include "hostapi/HostApi.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kovalune::test {

struct ExpectedParam {
    int index;
    A_long id;
    PF_ParamType type;
    std::string label;
    double initial;         ///< of sliders, check boxes and the popup
    double validMax;        ///< of sliders
    double sliderMax;       ///< of sliders
    std::size_t fieldPlace; ///< in RenderSettings
    std::size_t fieldWidth;
};

/// All 57 rows.
const std::vector<ExpectedParam>& expectedTable();

/// The row of a label; the label must exist.
const ExpectedParam& expectedParam(const std::string& label);

} // namespace kovalune::test
