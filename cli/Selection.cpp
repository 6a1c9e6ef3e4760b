#include "cli/Selection.h"

#include "cli/EffectStages.h"
#include "cli/Failure.h"
#include "cli/ParamText.h"
#include "cli/Reporting.h"

#include <nlohmann/json.hpp>

namespace kovalune {

namespace {

using Json = nlohmann::ordered_json;

constexpr char kNoCounts[] = "no counts: only the built-in effect tells what it selects and changes";

std::size_t colorsOf(std::size_t stage) {
    return stage == 0 ? kStageColors : 1;
}

std::string colorText(const host::Session& session, const std::string& label) {
    const std::optional<int> index = session.findParam(label);
    return index ? valueText(session.params()[static_cast<std::size_t>(*index)], {}, session.value(*index))
                 : std::string();
}

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
    return inQuotes(label) + " is set but " + inQuotes(checkBox) + " is off";
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
        notes.push_back("View shows " + view + ", but " + inQuotes(stageSwitch(*stage)) + " is off");
    }
}

std::string colorNote(const host::Session& session, const StageReport& report, std::size_t stage,
                      std::size_t color) {
    const std::string label = colorLabel(stage, color);
    std::string note = inQuotes(label) + " (" + colorText(session, label) +
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
    return inQuotes(std::to_string(stage) + " : Keep Process") + " ties " + stageName(stage) + " to " +
           stageName(static_cast<std::size_t>(report.keptInside)) + ", nothing left of its soft edge";
}

std::string padded(std::string text, std::size_t width, bool right) {
    text.insert(right ? 0 : text.size(), width - std::min(text.size(), width), ' ');
    return text;
}

std::string tableLine(const std::string& what, const std::string& color, const std::string& selected,
                      const std::string& changed) {
    std::string line = padded(what, 13, false) + padded(color, 9, false) + padded(selected, 10, true) +
                       padded(changed, 11, true);
    return line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
}

/// Why a stage has no counts.
std::string restText(const host::Session& session, std::size_t stage) {
    return isOn(session, stageSwitch(stage)) == false ? "off" : "not in this view";
}

std::string tableText(const host::Session& session, const FrameReport& counts) {
    std::string text = tableLine("Stage", "Colour", "Selected", "Changed");
    for (std::size_t stage = 0; stage < kStageCount; ++stage) {
        const StageReport& report = counts.stages[stage];
        if (!report.ran) {
            text += tableLine(stageName(stage), restText(session, stage), "", "");
            continue;
        }
        const std::string own = stage == 0 ? "" : colorText(session, colorLabel(stage, 0));
        text += tableLine(stageName(stage), own, std::to_string(report.allSelected()),
                          std::to_string(report.changed));
        for (std::size_t color = 0; stage == 0 && color < kStageColors; ++color) {
            const std::string label = colorLabel(stage, color);
            if (isOn(session, colorSwitch(stage, color)) == true) {
                text += tableLine("  " + label, colorText(session, label),
                                  std::to_string(report.selected[color]), "");
            }
        }
    }
    return text;
}

Json stageJson(const host::Session& session, const StageReport& report, std::size_t stage) {
    Json json = {{"stage", stageName(stage)}};
    if (!report.ran) {
        json["state"] = restText(session, stage);
        return json;
    }
    json["state"] = "run";
    json["selected"] = report.allSelected();
    json["changed"] = report.changed;
    if (stage > 0) {
        json["softEdge"] = report.edge;
        json["cutByKeepProcess"] = report.cut;
    }
    json["colors"] = Json::array();
    for (std::size_t color = 0; color < colorsOf(stage); ++color) {
        const std::string label = colorLabel(stage, color);
        if (isOn(session, colorSwitch(stage, color)) == true) {
            json["colors"].push_back({{"label", label},
                                      {"color", colorText(session, label)},
                                      {"selected", report.selected[color]}});
        }
    }
    return json;
}

std::string jsonText(const host::Session& session, const std::optional<FrameReport>& counts,
                     const std::vector<std::string>& notes) {
    Json json = Json::object();
    if (counts) {
        json["pixels"] = counts->pixels;
        json["stages"] = Json::array();
        for (std::size_t stage = 0; stage < kStageCount; ++stage) {
            json["stages"].push_back(stageJson(session, counts->stages[stage], stage));
        }
    } else {
        json["stages"] = nullptr;
        json["reason"] = kNoCounts;
    }
    json["notes"] = notes;
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
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

std::string selectionText(const host::Session& session, const std::optional<FrameReport>& counts,
                          const std::vector<std::string>& notes, bool json) {
    if (json) {
        return jsonText(session, counts, notes);
    }
    return counts ? tableText(session, *counts) : std::string(kNoCounts) + '\n';
}

void tellNotes(const std::vector<std::string>& notes, const std::optional<FrameReport>& counts,
               const ReportArguments& arguments) {
    for (const std::string& note : notes) {
        tell("note: " + note);
    }
    if (!counts && !arguments.report) {
        tell(std::string("note: ") + kNoCounts);
    }
}

void checkStrict(const std::vector<std::string>& notes, const ReportArguments& arguments,
                 const std::string& output) {
    if (arguments.strict && !notes.empty()) {
        throw Failure(ExitCode::kEffect,
                      "--strict: " + inQuotes(output) + " is not written, since " +
                          (notes.size() == 1 ? "a setting does nothing"
                                             : std::to_string(notes.size()) + " settings do nothing"));
    }
}

} // namespace kovalune
