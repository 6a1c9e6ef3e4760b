// The views that a sheet shows of a pass.
#pragma once

#include "host/Session.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::cli {

struct SheetView {
    int param = 0; ///< the index of the parameter that has the views
    A_long value = 0;
    std::string name;
    std::optional<std::size_t> stage; ///< that it shows
};

/// Those that can be chosen. Throws Failure where there are none.
std::vector<SheetView> sheetViews(const host::Session& session);

/// The ones of these names, in their order; all where there are none.
std::vector<SheetView> chosenViews(const host::Session& session, const std::vector<SheetView>& all,
                                   const std::vector<std::string>& names);

/// A colour that a view's stage picks.
struct ViewColor {
    std::size_t place = 0; ///< in the stage's list
    PF_Pixel color{};
    std::string text; ///< "#3264B4"
};

/// A place on the sheet, with what the session's values say of it.
struct SheetCell {
    SheetView view;
    bool isOff = false; ///< it would show a stage that is switched off
    std::string caption;
    std::vector<ViewColor> colors; ///< of the view's stage that are switched on
};
SheetCell sheetCell(const host::Session& session, const SheetView& view);

} // namespace kovalune::cli
