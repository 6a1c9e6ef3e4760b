#include "effect/params/ReadOut.h"

#include "effect/params/ParamRegistry.h"

namespace kovalune {

PF_Err readParameters(RenderSettings* record, ParamGetter& getter) {
    return paramRegistry().forEach([&](BaseParam& param) { return param.readValue(record, getter); });
}

PF_Err giveBackParameters(ParamGetter& getter) {
    return paramRegistry().forEach([&](BaseParam& param) { return param.checkIn(getter); });
}

} // namespace kovalune
