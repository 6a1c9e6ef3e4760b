// Copies the parameters' current values into the render settings, raw: a range stays a percentage, a colour
// stays 8-bit, a check box one byte. Whatever conversion a value needs is made where it is used.
#pragma once

#include "effect/params/ParamGetter.h"
#include "effect/share/RenderSettings.h"

namespace kovalune {

/// Reads every parameter, greyed out or not, into the record (null: into the parameter objects alone). Stops
/// at the first failure and returns it.
[[nodiscard]] PF_Err readParameters(RenderSettings* record, ParamGetter& getter);

/// Gives every parameter back. Stops at the first failure and returns it.
[[nodiscard]] PF_Err giveBackParameters(ParamGetter& getter);

/// All parameters for a scope: whichever way it is left, they are given back, once, also where reading them failed or never
/// began. The getter outlives it.
class ParameterCheckout {
public:
    explicit ParameterCheckout(ParamGetter& getter) : getter_(getter) {}
    ~ParameterCheckout();
    ParameterCheckout(const ParameterCheckout&) = delete;
    ParameterCheckout& operator=(const ParameterCheckout&) = delete;

    [[nodiscard]] PF_Err readInto(RenderSettings& record) { return readParameters(&record, getter_); }

    /// For the scope that wants to know how it went; the end of the scope drops the code.
    [[nodiscard]] PF_Err giveBack();

private:
    ParamGetter& getter_;
    bool isGivenBack_ = false;
};

} // namespace kovalune
