#include "cli/text/FrameLog.h"

#include "cli/ExitCode.h"
#include "render/Stages.h"
#include "text/MessageText.h"

#include <cerrno>
#include <nlohmann/json.hpp>

namespace kovalune::cli {

namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void fail(const std::string& name) {
    throw text::Failure(text::FailureKind::kFile,
                        "cannot write " + text::inQuotes(name) + ": " + text::systemReason(errno));
}

const char* stateText(shots::FrameState state) {
    switch (state) {
    case shots::FrameState::kWritten:
        return "written";
    case shots::FrameState::kPassedOver:
        return "passed over";
    case shots::FrameState::kFailed:
        return "failed";
    default:
        return "given up";
    }
}

Json stagesJson(const FrameReport& counts) {
    Json stages = Json::array();
    for (std::size_t stage = 0; stage < kStageCount; ++stage) {
        const StageReport& report = counts.stages[stage];
        if (report.ran) {
            stages.push_back({{"stage", render::stageName(stage)}, {"selected", report.allSelected()}});
            if (counts.countsChanges) {
                stages.back()["changed"] = report.changed;
            }
        }
    }
    return stages;
}

Json passesJson(const render::ShotSettings& settings, const shots::FrameRecord& record) {
    Json passes = Json::array();
    for (std::size_t pass = 0; pass < record.passes.size(); ++pass) {
        Json json = Json::object();
        if (settings.hasPasses()) {
            json["pass"] = settings.passName(pass);
        }
        if (record.passes[pass].counts) {
            json["stages"] = stagesJson(*record.passes[pass].counts);
        }
        json["notes"] = record.passes[pass].notes;
        passes.push_back(std::move(json));
    }
    return passes;
}

} // namespace

FrameLog::FrameLog(const std::string& file) : name_(file), file_(std::fopen(file.c_str(), "w")) {
    if (!file_) {
        fail(name_);
    }
}

void FrameLog::add(const shots::SequencePlan& plan, const render::ShotSettings& settings,
                   const shots::FrameRecord& record) {
    const shots::PlannedFrame& frame = plan.frames[record.index];
    Json json = Json::object();
    json["frame"] = frame.number ? Json(*frame.number) : Json(nullptr);
    json["input"] = frame.input;
    json["output"] = frame.output;
    json["state"] = stateText(record.state);
    json["milliseconds"] = {{"reading", record.times.reading},
                            {"effect", record.times.effect},
                            {"writing", record.times.writing}};
    json["passes"] = passesJson(settings, record);
    const bool failed = record.state == shots::FrameState::kFailed;
    json["code"] = failed ? static_cast<int>(exitCodeOf(record.kind)) : 0;
    json["message"] = record.message;
    const std::string line = json.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
    if (std::fwrite(line.data(), 1, line.size(), file_.get()) != line.size() ||
        std::fflush(file_.get()) != 0) {
        fail(name_);
    }
}

} // namespace kovalune::cli
