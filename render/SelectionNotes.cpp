#include "render/SelectionNotes.h"

#include "render/ParamText.h"
#include "render/Stages.h"
#include "text/MessageText.h"

namespace kovalune::render {

namespace {

bool isDefault(const host::Session& session, const std::string& label) {
    const int index = session.findParam(label).value_or(0);
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    return valueText(def, {}, session.value(index)) == valueText(def, {}, session.defaultValue(index));
}

bool isNamed(const host::Session& session, const NamedParams& named, const std::string& label) {
    const std::optional<int> index = session.findParam(label);
    return index && named.contains(*index);
}

/// Whoever switches off by name knows it.
bool isOffUnnamed(const host::Session& session, const NamedParams& named, const std::string& checkBox) {
    return isOn(session, checkBox) == false && !isNamed(session, named, checkBox);
}

std::string offNote(const std::string& label, const std::string& checkBox) {
    return text::inQuotes(label) + " is set but " + text::inQuotes(checkBox) + " is off";
}

void addOffNotes(std::vector<std::string>& notes, const host::Session& session, const NamedParams& named) {
    for (std::size_t color = 0; color < kStageColors; ++color) {
        const std::string label = colorLabel(0, color);
        if (!isOffUnnamed(session, named, colorSwitch(0, color))) {
            continue;
        }
        for (const std::string& set : {label, label + " Range"}) {
            if (isNamed(session, named, set)) {
                notes.push_back(offNote(set, colorSwitch(0, color)));
                break;
            }
        }
    }
    for (std::size_t stage = 1; stage < kStageCount; ++stage) {
        if (!isOffUnnamed(session, named, stageSwitch(stage))) {
            continue;
        }
        const std::string start = std::to_string(stage) + " : ";
        for (const int index : named) {
            const std::string label = session.params()[static_cast<std::size_t>(index)].name;
            if (label.starts_with(start)) {
                notes.push_back(offNote(label, stageSwitch(stage)));
                break;
            }
        }
    }
}

/// Whoever named the switch too is told all the same: the view is not what it is called.
void addViewNote(std::vector<std::string>& notes, const host::Session& session) {
    const std::optional<int> index = session.findParam(std::string(kViewLabel));
    if (!index) {
        return;
    }
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(*index)];
    if (def.param_type != PF_Param_POPUP) {
        return;
    }
    const std::string view = valueText(def, session.choices(*index), session.value(*index));
    if (const std::optional<std::size_t> stage = offStageOf(session, view)) {
        notes.push_back("View shows " + view + ", but " + text::inQuotes(stageSwitch(*stage)) + " is off");
    }
}

std::string colorNote(const host::Session& session, const StageReport& report, std::size_t stage,
                      std::size_t color) {
    const std::string label = colorLabel(stage, color);
    std::string note = text::inQuotes(label) + " (" + colorText(session, label) +
                       (isDefault(session, label) ? ", the default" : "") + ") selects no pixel";
    for (std::size_t before = 0; before < color; ++before) {
        if (report.selected[before] > 0) {
            return note + " beyond those of the colours before it";
        }
    }
    return stage == 0 ? note : note + ": " + stageName(stage) + " does nothing";
}

void addColorNotes(std::vector<std::string>& notes, const host::Session& session, const StageReport& report,
                   std::size_t stage) {
    for (std::size_t color = 0; color < colorsOf(stage); ++color) {
        if (report.selected[color] == 0 && isOn(session, colorSwitch(stage, color)) == true) {
            notes.push_back(colorNote(session, report, stage, color));
        }
    }
}

std::string keptNote(const StageReport& report, std::size_t stage) {
    return text::inQuotes(std::to_string(stage) + " : Keep Process") + " ties " + stageName(stage) + " to " +
           stageName(static_cast<std::size_t>(report.keptInside)) + ", nothing left of its soft edge";
}

} // namespace

std::vector<std::string> selectionNotes(const host::Session& session, const NamedParams& named,
                                        const std::optional<FrameReport>& counts) {
    std::vector<std::string> notes;
    addOffNotes(notes, session, named);
    addViewNote(notes, session);
    for (std::size_t stage = 0; counts && stage < kStageCount; ++stage) {
        const StageReport& report = counts->stages[stage];
        if (!report.ran) {
            continue;
        }
        addColorNotes(notes, session, report, stage);
        if (report.allSelected() > 0 && report.cut > 0 && report.edge == 0) {
            notes.push_back(keptNote(report, stage));
        }
    }
    return notes;
}

} // namespace kovalune::render
