#include "effect/params/ReadOut.h"

#include "effect/params/ParamRegistry.h"
#include "effect/share/HostCode.h"

namespace kovalune {

PF_Err readParameters(RenderSettings* record, ParamGetter& getter) {
    return paramRegistry().forEach([&](BaseParam& param) { return param.readValue(record, getter); });
}

PF_Err giveBackParameters(ParamGetter& getter) {
    return paramRegistry().forEach([&](BaseParam& param) { return param.checkIn(getter); });
}

PF_Err ParameterCheckout::giveBack() {
    isGivenBack_ = true;
    return giveBackParameters(getter_);
}

ParameterCheckout::~ParameterCheckout() {
    if (isGivenBack_) {
        return;
    }
    try {
        ignored(giveBack());
    } catch (...) { // NOLINT(bugprone-empty-catch): a second exception would end the process
    }
}

} // namespace kovalune
