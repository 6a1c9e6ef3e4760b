// A frame's progress as the host sees it, which is also the only place where a frame learns that it was
// cancelled.
#pragma once

#include "effect/share/Integers.h"
#include "hostapi/HostApi.h"

#include <algorithm>
#include <cstdint>

namespace kovalune {

/// Owned by the frame, which counts its steps; the blurs only report.
struct ProgressCounter {
    PF_InData* in_data = nullptr;
    PF_ProgPtr effect_ref = nullptr;
    int32_t total = 0;
    int32_t current = 0;

    /// Tells the host the percentage reached, at most 100. A non-zero answer ends the frame.
    [[nodiscard]] PF_Err report() const {
        if (in_data == nullptr) {
            return PF_Err_NONE;
        }
        const int64_t reached = wrappingMul(current, 100);
        const auto percent = total == 0 ? 100 : static_cast<A_long>(std::min<int64_t>(reached / total, 100));
        return in_data->inter.progress(effect_ref, percent, 100);
    }

    /// One step more, and the host's answer to it.
    [[nodiscard]] PF_Err tick() {
        if (in_data == nullptr) {
            return PF_Err_NONE;
        }
        current = wrappingAdd(current, 1);
        return report();
    }
};

} // namespace kovalune
