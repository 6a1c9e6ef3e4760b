#include "effect/params/ReadOut.h"

#include "effect/params/ParamRegistry.h"

namespace kovalune {
namespace {

template <class Operation>
PF_Err forEachParameter(Operation&& operation) {
    for (BaseParam* const param : paramRegistry().byIndex()) {
        if (param == nullptr) {
            continue;
        }
        const PF_Err err = operation(*param);
        if (err != PF_Err_NONE) {
            return err;
        }
    }
    return PF_Err_NONE;
}

} // namespace

PF_Err readParameters(RenderSettings* record, ParamGetter& getter) {
    return forEachParameter([&](BaseParam& param) { return param.readValue(record, getter); });
}

PF_Err giveBackParameters(ParamGetter& getter) {
    return forEachParameter([&](BaseParam& param) { return param.checkIn(getter); });
}

} // namespace kovalune
