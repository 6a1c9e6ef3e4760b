#include "cli/commands/SheetViews.h"

#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "render/Stages.h"
#include "text/Failure.h"

#include <algorithm>
#include <variant>

namespace kovalune::cli {

namespace {

std::optional<std::size_t> stageOf(const std::string& view) {
    for (std::size_t stage = 0; stage < kStageCount; ++stage) {
        if (view == render::stageName(stage)) {
            return stage;
        }
    }
    return std::nullopt;
}

} // namespace

std::vector<SheetView> sheetViews(const host::Session& session) {
    const int index = render::findSettable(session.params(), render::kViewLabel);
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    const std::vector<std::string> choices = session.choices(index);
    std::vector<SheetView> views;
    for (const A_long value : render::choosable(def, choices)) {
        const std::string name = render::valueText(def, choices, value);
        views.push_back({index, value, name, stageOf(name)});
    }
    if (views.empty()) {
        throw text::Failure(text::FailureKind::kUsage, "the effect has no views to draw");
    }
    return views;
}

std::vector<SheetView> chosenViews(const host::Session& session, const std::vector<SheetView>& all,
                                   const std::vector<std::string>& names) {
    std::vector<SheetView> chosen;
    for (const std::string& name : names) {
        const PF_ParamDef& def = session.params()[static_cast<std::size_t>(all.front().param)];
        const auto value =
            std::get<A_long>(render::parseValue(def, session.choices(all.front().param), name));
        chosen.push_back(*std::find_if(all.begin(), all.end(),
                                       [value](const SheetView& view) { return view.value == value; }));
    }
    return names.empty() ? all : chosen;
}

SheetCell sheetCell(const host::Session& session, const SheetView& view) {
    SheetCell cell{view, render::offStageOf(session, view.name).has_value(), view.name, {}};
    if (cell.isOff) {
        cell.caption += " (off)";
        return cell;
    }
    for (std::size_t color = 0; view.stage && color < render::colorsOf(*view.stage); ++color) {
        if (render::isOn(session, render::colorSwitch(*view.stage, color)) == true) {
            const std::string label = render::colorLabel(*view.stage, color);
            const std::optional<int> index = session.findParam(label);
            cell.colors.push_back(
                {color, std::get<PF_Pixel>(session.value(index.value())), render::colorText(session, label)});
        }
    }
    return cell;
}

} // namespace kovalune::cli
