#include "render/json/SelectionJson.h"

#include "render/Stages.h"

#include <nlohmann/json.hpp>

namespace kovalune::render {

namespace {

using Json = nlohmann::ordered_json;

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

} // namespace

std::string restText(const host::Session& session, std::size_t stage) {
    return isOn(session, stageSwitch(stage)) == false ? "off" : "not in this view";
}

void addCounts(Json& json, const host::Session& session, const FrameReport& counts) {
    json["pixels"] = counts.pixels;
    json["stages"] = Json::array();
    for (std::size_t stage = 0; stage < kStageCount; ++stage) {
        json["stages"].push_back(stageJson(session, counts.stages[stage], stage));
    }
}

} // namespace kovalune::render
