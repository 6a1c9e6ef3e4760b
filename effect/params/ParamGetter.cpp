#include "effect/params/ParamGetter.h"

namespace kovalune {
namespace {

bool isEnabledInArray(PF_ParamDef** params, int32_t index) {
    return (params[index]->ui_flags & PF_PUI_DISABLED) == 0;
}

} // namespace

PF_Err GetParamFromArray::getParam(int32_t index, PF_ParamDef* def) {
    *def = *params_[index];
    return PF_Err_NONE;
}

PF_Err GetParamFromArray::releaseParam(PF_ParamDef* /*def*/) {
    return PF_Err_NONE;
}

bool GetParamFromArray::isEnabled(int32_t index) const {
    return isEnabledInArray(params_, index);
}

PF_Err GetParamByCheckout::getParam(int32_t index, PF_ParamDef* def) {
    const PF_Err err = inData_->inter.checkout_param(inData_->effect_ref, index, inData_->current_time,
                                                     inData_->time_step, inData_->time_scale, def);
    if (err != PF_Err_NONE) {
        *def = {};
    }
    return err;
}

PF_Err GetParamByCheckout::releaseParam(PF_ParamDef* def) {
    return inData_->inter.checkin_param(inData_->effect_ref, def);
}

bool GetParamByCheckout::isEnabled(int32_t index) const {
    return params_ == nullptr || isEnabledInArray(params_, index);
}

} // namespace kovalune
