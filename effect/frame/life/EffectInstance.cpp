#include "effect/frame/life/EffectInstance.h"

#include "effect/frame/CustomFilter.h"
#include "effect/params/ParamTable.h"

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <new>

namespace kovalune {
namespace {

// Static storage, not allocated: the object is there to the end of the process.
alignas(std::max(alignof(CustomFilter), alignof(BaseFilter))) std::byte
    filterStorage[std::max(sizeof(CustomFilter), sizeof(BaseFilter))];

} // namespace

EffectInstance& effectInstance() {
    static EffectInstance instance;
    return instance;
}

PF_Err EffectInstance::setUpOnFirstCall(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                        PF_LayerDef* output) {
    if (initialised_) {
        return PF_Err_NONE;
    }
    if (!pendingErrors_) {
        pendingErrors_.emplace();
    }
    std::setlocale(LC_ALL, "");
    establish();
    buildParamTable();
    const PF_Err err = filter_->firstCall(in, out, params, output);
    initialised_ = true;
    return err;
}

void EffectInstance::establish() {
    filter_ = new (filterStorage) CustomFilter();
}

void EffectInstance::end() {
    filter_->~BaseFilter();
    filter_ = new (filterStorage) BaseFilter();
}

} // namespace kovalune
