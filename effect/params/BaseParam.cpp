#include "effect/params/BaseParam.h"

#include "effect/params/ParamRegistry.h"

#include <cstring>

namespace kovalune {

BaseParam::BaseParam(FieldTarget field, const char* labelText, const PF_ParamDef* definitionTemplate)
    : label(labelText),
      def(definitionTemplate != nullptr ? RoomyParamDef(*definitionTemplate) : RoomyParamDef()),
      paramIndex(paramRegistry().takeIndex()), fieldPlace(field.place), fieldWidth(field.width) {}

PF_Err BaseParam::readValue(RenderSettings* record, ParamGetter& getter) {
    if (fieldWidth == 0) {
        return PF_Err_NONE;
    }
    const PF_Err err = getter.getParam(paramIndex, &def);
    if (err != PF_Err_NONE) {
        return err;
    }
    if (record != nullptr) {
        // Every type's value stands first in the union; a check box's byte is the low one of its word.
        auto* const fields = static_cast<uint8_t*>(static_cast<void*>(record));
        std::memcpy(fields + fieldPlace, &def.u, fieldWidth);
    }
    return PF_Err_NONE;
}

PF_Err BaseParam::checkIn(ParamGetter& getter) {
    return fieldWidth != 0 ? getter.releaseParam(&def) : PF_Err{PF_Err_NONE};
}

bool BaseParam::saveDefault(const char* /*defaultsPath*/) const {
    return true;
}

void BaseParam::beginDefinition(PF_InData* inData, PF_ParamType type) {
    def.param_type = type;
    inData->utils->ansi.strcpy(def.name, label);
}

PF_Err BaseParam::addDefinition(PF_InData* inData, int32_t id) {
    constexpr A_long kAppend = -1;
    def.uu.id = id;
    return inData->inter.add_param(inData->effect_ref, kAppend, &def);
}

} // namespace kovalune
