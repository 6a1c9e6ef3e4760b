// A parameter of the effect: an object that knows how to register one control with the host, how to read its
// value into the render settings and how to remember it in the defaults file.
#pragma once

#include "effect/params/ParamGetter.h"
#include "effect/share/RenderSettings.h"
#include "hostapi/HostApi.h"

#include <cstddef>
#include <cstdint>

namespace kovalune {

/// The field of RenderSettings that receives a value: its place and the bytes copied to it, 0 for none.
struct FieldTarget {
    std::size_t place = 0;
    std::size_t width = 0;
};

class BaseParam {
public:
    /// Takes the next number of the process-wide index counter. `label` is a constant text; without a
    /// template the definition starts zeroed.
    BaseParam(FieldTarget field, const char* label, const PF_ParamDef* definitionTemplate);
    virtual ~BaseParam() = default;
    BaseParam(const BaseParam&) = delete;
    BaseParam& operator=(const BaseParam&) = delete;

    /// Fetches the value into `def` and copies `fieldWidth` bytes of it to the record, if there is one. A
    /// group start or end does nothing. Two read-outs at once may mix their values: nothing keeps
    /// them apart here. The reference host runs one command at a time but for PF_Cmd_SMART_RENDER, which reads none out;
    /// what other hosts do is theirs.
    [[nodiscard]] virtual PF_Err readValue(RenderSettings* record, ParamGetter& getter);

    /// Gives back what `readValue` fetched.
    [[nodiscard]] virtual PF_Err checkIn(ParamGetter& getter);

    /// Registers the control, with the remembered default where the host permits it and a path is given.
    [[nodiscard]] virtual PF_Err addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) = 0;

    /// Writes the value in `def` to the defaults file. False if it could not be written; a group has no value.
    [[nodiscard]] virtual bool saveDefault(const char* defaultsPath) const;

    const char* const label; ///< also the key in the defaults file
    RoomyParamDef def;       ///< what the host was told, and the value last read
    int32_t diskId = 0;      ///< persistent: saved projects refer to it
    const int32_t paramIndex;
    const std::size_t fieldPlace;
    const std::size_t fieldWidth;
    int32_t linkId = 0;    ///< frozen: `diskId` of a related parameter, 0 for none
    int32_t linkIndex = 0; ///< frozen: its `paramIndex`, or 0

protected:
    /// Sets type and name of `def`.
    void beginDefinition(PF_InData* inData, PF_ParamType type);
    /// Hands `def` to the host under `id`.
    [[nodiscard]] PF_Err addDefinition(PF_InData* inData, int32_t id);
};

} // namespace kovalune
