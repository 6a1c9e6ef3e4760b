#include "effect/params/ParamRegistry.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kovalune {

void ParamRegistry::add(std::unique_ptr<BaseParam> param, int32_t diskId, int32_t linkId) {
    param->diskId = diskId;
    param->linkId = linkId;
    byId_.push_back(std::move(param));
}

void ParamRegistry::finish() {
    std::sort(byId_.begin(), byId_.end(), [](const auto& a, const auto& b) { return a->diskId < b->diskId; });
    byIndex_.assign(1, nullptr);
    for (const auto& param : byId_) {
        byIndex_.push_back(param.get());
    }
    std::sort(byIndex_.begin() + 1, byIndex_.end(),
              [](const BaseParam* a, const BaseParam* b) { return a->paramIndex < b->paramIndex; });
    for (const auto& param : byId_) {
        const BaseParam* const link = findById(param->linkId);
        param->linkIndex = link != nullptr ? link->paramIndex : 0;
    }
}

void ParamRegistry::clear() {
    byIndex_.clear();
    byId_.clear();
}

BaseParam* ParamRegistry::findById(int32_t diskId) const {
    const auto found = std::lower_bound(byId_.begin(), byId_.end(), diskId,
                                        [](const auto& param, int32_t id) { return param->diskId < id; });
    return found != byId_.end() && (*found)->diskId == diskId ? found->get() : nullptr;
}

void ParamRegistry::setSectionName(const char* name) {
    std::memset(sectionName_, 0, sizeof sectionName_);
    std::strncpy(sectionName_, name, sizeof sectionName_ - 1);
}

ParamRegistry& paramRegistry() {
    static ParamRegistry registry;
    return registry;
}

} // namespace kovalune
