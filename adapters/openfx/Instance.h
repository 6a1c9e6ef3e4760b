// One instance of the plug-in in the host: what it keeps between actions. All else lies with the host: the parameters' values
// are the whole state.
#pragma once

#include "adapters/openfx/Controls.h"
#include "adapters/openfx/Engine.h"
#include "adapters/openfx/PropertySet.h"
#include "adapters/openfx/Suites.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace kovalune::openfx {

/// What the parameters say at a time.
struct Settings {
    host::ParamValues values; ///< of the effect, every one
    bool isLinear = false;
};

class Instance {
public:
    /// Throws ActionFailure for a parameter or a clip that the host does not have.
    Instance(const Suites& suites, const std::vector<Control>& controls, std::shared_ptr<Engine> engine,
             Effect effect);

    /// Values at a time, or without one those that the host shows; of one that the parameter does not take, the nearest that it
    /// does. In linear light colours go through the curve. Of calls at a time one after
    /// the other reads the host's. Throws ActionFailure, naming the parameter, where the host gives none.
    Settings settingsAt(std::optional<double> time) const;

    /// Greys out what has no effect with the values that the host shows, of what is not known to be as it should be.
    void updateEnabled();

    const Suites& suites() const { return suites_; }
    Engine& engine() const { return *engine_; }
    Effect effect() const { return effect_; }
    Clip source() const { return source_; }
    Clip output() const { return output_; }
    Clip mask() const { return mask_; } ///< null where the context has none
    bool isGeneral() const { return mask_ != nullptr; }

    PropertySet propertiesOf(Clip clip) const;

    /// Of renders on several threads: whether a lasting message is to be seen.
    std::atomic<bool> hasMessage = false;

private:
    struct Held {
        const Control* control;
        Param param;
        std::optional<bool> enabled; ///< as the host was told last
    };

    Clip clipNamed(const char* clip) const;
    bool isLinearAt(std::optional<double> time) const;
    host::ParamValue valueAt(const Held& held, std::optional<double> time, bool isLinear) const;

    const Suites& suites_;
    std::shared_ptr<Engine> engine_;
    Effect effect_;
    Clip source_ = nullptr;
    Clip output_ = nullptr;
    Clip mask_ = nullptr;
    std::vector<Held> held_;
    mutable std::mutex readMutex_;
};

} // namespace kovalune::openfx
