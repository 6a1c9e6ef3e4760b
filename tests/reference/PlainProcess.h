// A whole frame written out plainly, from the opening's copy to the finish, on plain pictures and masks. It also counts
// the calls that a frame makes of the host for its pixels, and any one of them can be made to fail.
#pragma once

#include "effect/share/RenderSettings.h"
#include "tests/support/PlainPicture.h"

#include <vector>

namespace kovalune::test {

/// What a frame asks of the host: a pass over the pixels, a copy or the clearing of a world, a progress report, the
/// conversion of a listed colour.
enum class PlainCall { kNone, kPass, kCopy, kClear, kProgress, kConversion };

struct PlainFault {
    PlainCall call = PlainCall::kNone;
    int32_t number = 0; ///< which call of this kind, from 1
    PF_Err code = PF_Err_NONE;
};

/// The record that a driver gets, and what it asks the host for.
struct PlainJob {
    const RenderSettings& settings;
    int32_t iterations = 1;
    double scale = 1.0;
    PlainFault fault; ///< not the first copy
};

struct PlainRendered {
    PlainPicture output;
    PF_Err err = PF_Err_NONE;
    int32_t passes = 0;
    int32_t copies = 0;
    int32_t clears = 0;
    int32_t conversions = 0;
    std::vector<int> percents = {}; ///< of the progress reports
};

/// On a host that poisons uncleared worlds.
PlainRendered plainRender(const PlainJob& job, const PlainPicture& input);

} // namespace kovalune::test
