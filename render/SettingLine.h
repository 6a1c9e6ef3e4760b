// One setting as text: "LABEL=VALUE", or "LABEL@FRAME=VALUE" for the value of one frame.
#pragma once

#include "host/Session.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace kovalune::render {

/// A parameter, or one of 'r', 'g', 'b' and 'a' of a colour, as the effect's defaults file has them. The whole of a colour is
/// 'r', 'g' and 'b'.
struct SettingTarget {
    static constexpr char kWhole = ' ';

    int index = 0;
    char component = kWhole;

    // NOLINTNEXTLINE(modernize-use-nullptr): the checker means the 0 that such a comparison is made with
    friend auto operator<=>(const SettingTarget&, const SettingTarget&) = default;
};

struct Setting {
    SettingTarget target;
    std::optional<int64_t> frame; ///< none: of all frames
    host::ParamValue value;       ///< of a component: its number
};

/// Throws Failure for a label or a value that the effect does not take, and for a frame that is no whole number.
Setting parseSetting(const host::Session& session, std::string_view line);

} // namespace kovalune::render
