#include "adapters/openfx/Instance.h"

#include "adapters/openfx/ActionFailure.h"
#include "effect/Kovalune.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace kovalune::openfx {

namespace {

/// Calls the one of the suite's functions that reads values at a time, or as they are shown.
template <class... Values>
void read(const Suites& suites, Param param, const Control& control, std::optional<double> time,
          Values*... values) {
    const Status status = time ? suites.params->getValueAtTime(param, *time, values...)
                               : suites.params->getValue(param, values...);
    if (status != kOk) {
        throw ActionFailure(kFailed, "the host gives no value of the parameter " + control.name);
    }
}

/// NaN is the lowest.
double within(double value, double lowest, double highest) {
    return value >= lowest ? std::min(value, highest) : lowest;
}

A_u_char byteOf(double value, bool isLinear) {
    constexpr double kWhite = 255.0;
    const double fraction = within(value, 0.0, 1.0);
    return static_cast<A_u_char>(std::floor((isLinear ? srgbOfLinear(fraction) : fraction) * kWhite + 0.5));
}

A_long choiceOf(const Control& control, int choice) {
    const auto last = static_cast<int>(control.choiceValues.size()) - 1;
    return control.choiceValues[static_cast<std::size_t>(std::clamp(choice, 0, last))];
}

} // namespace

Instance::Instance(const Suites& suites, const std::vector<Control>& controls, std::shared_ptr<Engine> engine,
                   Effect effect)
    : suites_(suites), engine_(std::move(engine)), effect_(effect) {
    Properties properties = nullptr;
    ParamSet params = nullptr;
    if (suites.effects->getPropertySet(effect, &properties) != kOk ||
        suites.effects->getParamSet(effect, &params) != kOk) {
        throw ActionFailure(kBadHandle, "the host gives no properties of the instance");
    }
    source_ = clipNamed(name::kSource);
    output_ = clipNamed(name::kOutput);
    if (PropertySet(*suites.properties, properties).text(name::kContext) == name::kContextGeneral) {
        mask_ = clipNamed(name::kMask);
    }
    for (const Control& control : controls) {
        if (control.kind == Control::Kind::kGroup) {
            continue;
        }
        Param param = nullptr;
        if (suites.params->getHandle(params, control.name.c_str(), &param, nullptr) != kOk ||
            param == nullptr) {
            throw ActionFailure(kFailed, "the host has no parameter " + control.name);
        }
        held_.push_back({&control, param, std::nullopt});
    }
}

Clip Instance::clipNamed(const char* clip) const {
    Clip handle = nullptr;
    if (suites_.effects->clipGetHandle(effect_, clip, &handle, nullptr) != kOk || handle == nullptr) {
        throw ActionFailure(kFailed, std::string("the host has no clip ") + clip);
    }
    return handle;
}

PropertySet Instance::propertiesOf(Clip clip) const {
    Properties properties = nullptr;
    if (suites_.effects->clipGetPropertySet(clip, &properties) != kOk) {
        properties = nullptr;
    }
    return {*suites_.properties, properties};
}

bool Instance::isLinearAt(std::optional<double> time) const {
    const Held& last = held_.back();
    int choice = 0;
    read(suites_, last.param, *last.control, time, &choice);
    return choiceOf(*last.control, choice) == kLinearLight;
}

host::ParamValue Instance::valueAt(const Held& held, std::optional<double> time, bool isLinear) const {
    const Control& control = *held.control;
    if (control.kind == Control::Kind::kNumber) {
        double value = 0.0;
        read(suites_, held.param, control, time, &value);
        return within(value, control.lowest, control.highest);
    }
    if (control.kind == Control::Kind::kColor) {
        std::array<double, 3> rgb = {};
        read(suites_, held.param, control, time, &rgb[0], &rgb[1], &rgb[2]);
        return PF_Pixel{std::get<PF_Pixel>(control.initial).alpha, byteOf(rgb[0], isLinear),
                        byteOf(rgb[1], isLinear), byteOf(rgb[2], isLinear)};
    }
    int value = 0;
    read(suites_, held.param, control, time, &value);
    if (control.kind == Control::Kind::kChoice) {
        return choiceOf(control, value);
    }
    if (control.kind == Control::Kind::kCheckBox) {
        return A_long{value != 0 ? 1 : 0};
    }
    return static_cast<A_long>(within(value, control.lowest, control.highest));
}

Settings Instance::settingsAt(std::optional<double> time) const {
    // Hosts' parameters need not bear several threads. As they are shown they are read by the one main thread, which must not wait
    // for renders that wait for it.
    const auto lock = time ? std::unique_lock(readMutex_) : std::unique_lock<std::mutex>();
    Settings settings;
    settings.isLinear = isLinearAt(time);
    for (const Held& held : held_) {
        if (held.control->index != 0) {
            settings.values.emplace_back(held.control->index, valueAt(held, time, settings.isLinear));
        }
    }
    return settings;
}

void Instance::updateEnabled() {
    const std::vector<bool> enabled = engine_->enabledOf(settingsAt(std::nullopt).values);
    for (Held& held : held_) {
        const bool now = enabled[static_cast<std::size_t>(held.control->index)];
        if (held.control->index == 0 || held.enabled == now) {
            continue;
        }
        Properties properties = nullptr;
        if (suites_.params->getPropertySet(held.param, &properties) == kOk && properties != nullptr) {
            PropertySet(*suites_.properties, properties).offer(name::kEnabled, now ? 1 : 0);
            held.enabled = now;
        }
    }
}

} // namespace kovalune::openfx
