#include "tests/frame/StubHost.h"

#include <cstring>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

StubHost* current = nullptr;

} // namespace

std::string suiteText(const char* name, int version) {
    return std::string(name) + ' ' + std::to_string(version);
}

StubHost& stubHost() {
    return *current;
}

StubHost::StubHost() {
    EXPECT_EQ(current, nullptr) << "two stubs at once";
    current = this;
    connectStub(*this);
    in.utils = &utils;
    in.pica_basicP = &basic;
    in.effect_ref = reinterpret_cast<PF_ProgPtr>(this);
    in.quality = PF_Quality_HI;
    in.version = {12, 14};
    in.appl_id = PF_AppID_FXTC;
    in.current_time = 70;
    in.time_step = 7;
    in.time_scale = 24;
    in.downsample_x = {1, 1};
    in.downsample_y = {1, 1};
    params.resize(1);
    params[0].param_type = PF_Param_LAYER;
}

StubHost::~StubHost() {
    for (const PF_ProgPtr reference : references) {
        EXPECT_EQ(reference, in.effect_ref);
    }
    EXPECT_EQ(suitesHeld, 0);
    EXPECT_EQ(liveLocks(), 0);
    EXPECT_EQ(liveWorlds(), 0);
    current = nullptr;
}

int StubHost::count(const std::string& call) const {
    const auto found = counts_.find(call);
    return found != counts_.end() ? found->second : 0;
}

int StubHost::liveLocks() const {
    int locks = 0;
    for (const auto& [handle, block] : blocks) {
        locks += block->locks;
    }
    return locks;
}

PF_ParamDef** StubHost::paramArray() {
    array_.clear();
    for (PF_ParamDef& param : params) {
        array_.push_back(&param);
    }
    array_.push_back(nullptr);
    return array_.data();
}

void StubHost::failAll(const std::string& name, PF_Err code) {
    fault = [name, code](const std::string& call, int) { return call == name ? code : PF_Err{0}; };
}

PF_Err StubHost::enter(const char* call, const std::string& arguments) {
    calls.emplace_back(call);
    callTexts.push_back(arguments.empty() ? call : std::string(call) + ' ' + arguments);
    const int nth = ++counts_[call];
    return fault ? fault(call, nth) : PF_Err{PF_Err_NONE};
}

PF_Err StubHost::enter(const char* call, const std::string& arguments, PF_ProgPtr reference) {
    references.push_back(reference);
    return enter(call, arguments);
}

StubHost::Block& StubHost::blockOf(PF_Handle handle) {
    static Block none;
    const auto found = blocks.find(handle);
    if (found == blocks.end()) {
        ADD_FAILURE() << "no live handle";
        return none;
    }
    return *found->second;
}

} // namespace kovalune::test
