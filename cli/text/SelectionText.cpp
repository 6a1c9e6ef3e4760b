#include "cli/text/SelectionText.h"

#include "cli/text/Reporting.h"
#include "render/SelectionNotes.h"
#include "render/Stages.h"
#include "render/json/SelectionJson.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <nlohmann/json.hpp>

namespace kovalune::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr char kNoCounts[] = "no counts: only the built-in effect tells what it selects and changes";

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

std::string tableText(const host::Session& session, const FrameReport& counts) {
    std::string text = tableLine("Stage", "Colour", "Selected", "Changed");
    for (std::size_t stage = 0; stage < kStageCount; ++stage) {
        const StageReport& report = counts.stages[stage];
        if (!report.ran) {
            text += tableLine(render::stageName(stage), render::restText(session, stage), "", "");
            continue;
        }
        const std::string own = stage == 0 ? "" : render::colorText(session, render::colorLabel(stage, 0));
        text += tableLine(render::stageName(stage), own, std::to_string(report.allSelected()),
                          std::to_string(report.changed));
        for (std::size_t color = 0; stage == 0 && color < kStageColors; ++color) {
            const std::string label = render::colorLabel(stage, color);
            if (render::isOn(session, render::colorSwitch(stage, color)) == true) {
                text += tableLine("  " + label, render::colorText(session, label),
                                  std::to_string(report.selected[color]), "");
            }
        }
    }
    return text;
}

/// What the effect counted, into `json`.
void addCounts(Json& json, const host::Session& session, const std::optional<FrameReport>& counts) {
    if (counts) {
        render::addCounts(json, session, *counts);
    } else {
        json["stages"] = nullptr;
        json["reason"] = kNoCounts;
    }
}

std::string documentText(Json& json, const std::vector<std::string>& notes) {
    json["notes"] = notes;
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace

std::string selectionText(const host::Session& session, const std::optional<FrameReport>& counts,
                          const std::vector<std::string>& notes, bool json) {
    if (json) {
        Json document = Json::object();
        addCounts(document, session, counts);
        return documentText(document, notes);
    }
    return counts ? tableText(session, *counts) : std::string(kNoCounts) + '\n';
}

std::string reportText(host::Session& session, const render::ShotSettings& settings, int64_t frame,
                       const std::vector<std::optional<FrameReport>>& counts,
                       const std::vector<std::string>& notes, bool json) {
    Json document = Json::object();
    std::string text;
    for (std::size_t pass = 0; pass < counts.size(); ++pass) {
        render::setValues(session, settings.valuesAt(pass, frame));
        if (!settings.hasPasses()) {
            return selectionText(session, counts[pass], notes, json);
        }
        Json section = {{"pass", settings.passName(pass)}};
        addCounts(section, session, counts[pass]);
        document["passes"].push_back(std::move(section));
        text += "Pass " + text::printable(settings.passName(pass)) + '\n' +
                selectionText(session, counts[pass], {}, false);
    }
    return json ? documentText(document, notes) : text;
}

std::vector<std::string> passNotes(const host::Session& session, const render::ShotSettings& settings,
                                   std::size_t pass, const std::optional<FrameReport>& counts) {
    std::vector<std::string> notes = render::selectionNotes(session, settings.named(pass), counts);
    if (settings.hasPasses()) {
        for (std::string& note : notes) {
            note.insert(0, "pass " + text::inQuotes(settings.passName(pass)) + ": ");
        }
    }
    return notes;
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

void checkStrict(std::size_t idleSettings, const ReportArguments& arguments, const std::string& output) {
    if (arguments.strict && idleSettings > 0) {
        throw text::Failure(text::FailureKind::kEffect,
                            "--strict: " + text::inQuotes(output) + " is not written, since " +
                                (idleSettings == 1 ? "a setting does nothing"
                                                   : std::to_string(idleSettings) + " settings do nothing"));
    }
}

} // namespace kovalune::cli
