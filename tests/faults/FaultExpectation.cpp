#include "tests/faults/FaultExpectation.h"

#include <algorithm>
#include <set>

namespace kovalune::test {
namespace {

using host::judge::CallRecord;

constexpr A_long kExtract = 3;
constexpr A_long kBase = 4;

std::vector<CallRecord> fallibleCalls(std::vector<CallRecord> log) {
    static const std::set<std::string> infallible = {"ReleaseSuite", "host_unlock_handle",
                                                     "host_dispose_handle"};
    std::erase_if(log, [](const CallRecord& record) { return infallible.count(record.call) != 0; });
    return log;
}

bool acquires(const CallRecord& record, const std::string& suite) {
    return record.call == "AcquireSuite" && record.arguments.starts_with(suite);
}

/// The pass after the conversion of listed colours is the extraction, in which pixels' colours are converted; the next
/// listed colour comes only after some other pass.
std::vector<std::size_t> listedColours(const std::vector<CallRecord>& calls) {
    std::vector<std::size_t> places;
    bool inExtraction = false;
    bool justListed = false;
    for (std::size_t at = 0; at < calls.size(); ++at) {
        if (calls[at].call == "iterate_generic") {
            inExtraction = justListed;
            justListed = false;
        } else if (calls[at].call == "RGBtoHLS" && !inExtraction) {
            places.push_back(at);
            justListed = true;
        }
    }
    return places;
}

} // namespace

FaultExpectation::FaultExpectation(const FaultScene& scene, std::vector<CallRecord> log)
    : scene_(scene), calls_(fallibleCalls(std::move(log))), colours_(listedColours(calls_)) {}

PF_Err FaultExpectation::codeOf(std::size_t at) const {
    const CallRecord& failed = calls_[at];
    if (failed.call == "AcquireSuite") {
        return codeOfSuite(at);
    }
    if (failed.call == "host_new_handle") {
        return PF_Err_OUT_OF_MEMORY;
    }
    if (failed.call == "host_lock_handle") {
        return isLockOfBlock(at) ? PF_Err_OUT_OF_MEMORY : PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    return isIgnored(at) ? PF_Err_NONE : kFault;
}

bool FaultExpectation::leavesBlock(std::size_t at) const {
    return acquires(calls_[at], "PF Handle Suite") &&
           (at + 1 == calls_.size() || calls_[at + 1].call != "host_new_handle");
}

/// Without version 2 of the world suite there is version 1, which disposes of any world but makes no float ones.
PF_Err FaultExpectation::codeOfSuite(std::size_t at) const {
    if (!acquires(calls_[at], "PF World Suite 2")) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (scene_.format != PF_PixelFormat_ARGB128 || at + 1 == calls_.size() ||
        calls_[at + 1].call != "PF_NewWorld") {
        return PF_Err_NONE;
    }
    return needsWorld(countBefore(at, "PF_NewWorld")) ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
}

/// Of a float frame's worlds, in the order in which they are made.
bool FaultExpectation::needsWorld(std::size_t number) const {
    const bool smoothsBase = scene_.blurAmount >= 1 && scene_.blurAmount < 15;
    const bool smoothsStage =
        std::any_of(scene_.processes.begin(), scene_.processes.end(), smoothsBoundaries);
    const bool hasStages = scene_.view != kBase;
    switch (number) {
    case 0: // selected pixels, and the Base blur's scratch
        return scene_.blurAmount >= 1 || smoothsStage;
    case 1: // the smoothed pixels that Base blurs
        return smoothsBase;
    case 7: // the spare one
        return false;
    case 8: // the last layer
        return !scene_.processes.empty();
    default: // cleared for every stage, also for those that are off
        return hasStages;
    }
}

/// A block of work memory is made and locked in one; the settings' handle comes first and is locked again later.
bool FaultExpectation::isLockOfBlock(std::size_t at) const {
    const bool first = countBefore(at, "host_lock_handle") == 0;
    const bool settings = scene_.flow == host::RenderFlow::kSmart && first;
    return !settings && at > 0 && calls_[at - 1].call == "host_new_handle";
}

bool FaultExpectation::isIgnored(std::size_t at) const {
    const std::string& call = calls_[at].call;
    if (call == "PF_DisposeWorld") {
        return true;
    }
    // Inside the boundary smoothing, whose result is ignored; the frame's own copies are of high quality.
    if (call == "copy" || call == "new_world" || call == "dispose_world") {
        return true;
    }
    return isPixelsConversion(at) || isCutOfLayer(at) || isCutOfOutput(at);
}

bool FaultExpectation::isPixelsConversion(std::size_t at) const {
    return calls_[at].call == "RGBtoHLS" && std::count(colours_.begin(), colours_.end(), at) == 0;
}

/// In the stage that keeps, the second pass after the blur: the bias comes before it.
bool FaultExpectation::isCutOfLayer(std::size_t at) const {
    const auto keeping = std::find(scene_.processes.begin(), scene_.processes.end(), scene_.keeping);
    if (calls_[at].call != "iterate_generic" || keeping == scene_.processes.end()) {
        return false;
    }
    const std::size_t stage = static_cast<std::size_t>(keeping - scene_.processes.begin()) + 2;
    const std::size_t begin = colours_[stage];
    const std::size_t end = stage + 1 < colours_.size() ? colours_[stage + 1] : calls_.size();
    std::size_t report = begin;
    for (std::size_t i = begin; i < end; ++i) {
        report = calls_[i].call == "progress" ? i : report;
    }
    return at > report && at < end &&
           countBefore(at, "iterate_generic") == countBefore(report, "iterate_generic") + 1;
}

/// The last pass of the views that have one.
bool FaultExpectation::isCutOfOutput(std::size_t at) const {
    const std::string pass = "iterate_generic";
    return (scene_.view == kExtract || scene_.view == kBase) && calls_[at].call == pass &&
           countBefore(at, pass) + 1 == countBefore(calls_.size(), pass);
}

std::size_t FaultExpectation::countBefore(std::size_t at, const std::string& call) const {
    return static_cast<std::size_t>(
        std::count_if(calls_.begin(), calls_.begin() + static_cast<std::ptrdiff_t>(at),
                      [&](const CallRecord& record) { return record.call == call; }));
}

} // namespace kovalune::test
