// The two ways to a parameter's current value: the host's checkout at render time, and the array that the
// host hands to a dialog.
#pragma once

#include "effect/share/AEUtil/Roomy.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// A definition for the host to fill in.
using RoomyParamDef = AEUtil::Roomy<PF_ParamDef>;

class ParamGetter {
public:
    ParamGetter() = default;
    virtual ~ParamGetter() = default;
    ParamGetter(const ParamGetter&) = delete;
    ParamGetter& operator=(const ParamGetter&) = delete;

    /// Writes the whole definition, value included, into a RoomyParamDef.
    [[nodiscard]] virtual PF_Err getParam(int32_t index, PF_ParamDef* def) = 0;
    [[nodiscard]] virtual PF_Err releaseParam(PF_ParamDef* def) = 0;
    virtual bool isPreRender() const = 0;            ///< frozen
    virtual bool isEnabled(int32_t index) const = 0; ///< frozen
};

class GetParamFromArray final : public ParamGetter {
public:
    explicit GetParamFromArray(PF_ParamDef** params) : params_(params) {}

    [[nodiscard]] PF_Err getParam(int32_t index, PF_ParamDef* def) override;
    [[nodiscard]] PF_Err releaseParam(PF_ParamDef* def) override;
    bool isPreRender() const override { return false; }
    bool isEnabled(int32_t index) const override;

private:
    PF_ParamDef** params_;
};

/// Reads at the times of `inData`. Without an array every parameter counts as enabled.
class GetParamByCheckout final : public ParamGetter {
public:
    GetParamByCheckout(PF_InData* inData, PF_ParamDef** paramsOrNull, bool isPreRender)
        : inData_(inData), params_(paramsOrNull), isPreRender_(isPreRender) {}

    /// On failure `def` is zeroed and the host's code returned.
    [[nodiscard]] PF_Err getParam(int32_t index, PF_ParamDef* def) override;
    [[nodiscard]] PF_Err releaseParam(PF_ParamDef* def) override;
    bool isPreRender() const override { return isPreRender_; }
    bool isEnabled(int32_t index) const override;

private:
    PF_InData* inData_;
    PF_ParamDef** params_;
    bool isPreRender_;
};

} // namespace kovalune
