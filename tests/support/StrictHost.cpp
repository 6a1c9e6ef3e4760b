#include "tests/support/StrictHost.h"

#include "host/CallbackTables.h"
#include "host/SuiteTables.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

namespace kovalune::test {

host::judge::JudgeOptions strictOptions() {
    host::judge::JudgeOptions options;
    options.threads = 1;
    options.iterations = 1;
    options.audit = true;
    options.poisonNewWorlds = true;
    return options;
}

host::judge::JudgeOptions shuffledOptions(int iterations, int threads, uint64_t seed) {
    host::judge::JudgeOptions options = strictOptions();
    options.iterations = iterations;
    options.threads = threads;
    options.shuffleIterations = true;
    options.shuffleSeed = seed;
    return options;
}

StrictHost::StrictHost(const host::judge::JudgeOptions& options)
    : host_(options), operation_(std::in_place, host_.options(), host::judge::FaultPlan{}),
      context_(host_.state(), *operation_, params_, PF_Cmd_SMART_RENDER), scope_(&context_),
      utils_(*host::utilCallbacks()), in_() {
    in_.inter = host::interactCallbacks();
    in_.utils = &utils_;
    in_.effect_ref = context_.reference();
    in_.quality = options.quality;
    in_.version = options.version;
    in_.appl_id = options.applId;
    in_.downsample_x = {1, 1};
    in_.downsample_y = {1, 1};
    in_.pica_basicP = host::basicSuite();
}

StrictHost::~StrictHost() {
    const host::judge::AuditReport report = host_.audit();
    EXPECT_TRUE(report.clean()) << report.text();
}

std::vector<std::string> StrictHost::callNames() const {
    std::vector<std::string> names;
    for (const host::judge::CallRecord& record : host_.calls()) {
        names.push_back(record.call);
    }
    return names;
}

std::vector<int> StrictHost::faultNumbersOf(const std::string& name) const {
    constexpr std::array infallible = {"host_unlock_handle", "host_dispose_handle", "host_get_handle_size",
                                       "ReleaseSuite"};
    std::vector<int> numbers;
    int number = 0;
    for (const std::string& call : callNames()) {
        if (std::find(infallible.begin(), infallible.end(), call) == infallible.end()) {
            ++number;
        }
        if (call == name) {
            numbers.push_back(number);
        }
    }
    return numbers;
}

int StrictHost::countCalls(const std::string& name) const {
    const std::vector<std::string> names = callNames();
    return static_cast<int>(std::count(names.begin(), names.end(), name));
}

} // namespace kovalune::test
