// The settings of a shot: its passes, and the values that each has at a frame.
#pragma once

#include "render/Settings.h"
#include "render/SettingsLayer.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kovalune::render {

/// Brings them into a session, whose keys they replace.
void setValues(host::Session& session, const host::ParamValues& values);

/// Of every parameter that can be set, as the session has it.
host::ParamValues valuesOf(const host::Session& session);

/// Layers over the values that a new session has. What a later layer says of a parameter replaces all that earlier ones said of
/// it, keys included; within a layer a pass's own settings lie over those of all passes. Between two keys a float slider goes
/// linearly, in double, and everything else keeps the earlier one's value; outside of them the nearest holds.
class ShotSettings {
public:
    /// `session` has its first values. Throws Failure where one of `options` is for a pass that no layer has.
    ShotSettings(const host::Session& session, const std::vector<SettingsLayer>& layers,
                 const SettingsLayer& options = {});

    std::size_t passCount() const { return passes_.size(); }
    /// Empty where there is a single pass without a name.
    const std::string& passName(std::size_t pass) const { return passes_[pass].name; }
    bool hasPasses() const { return !passes_.front().name.empty(); }
    bool hasKeys() const;

    /// Every parameter that can be set, as a pass has it at a frame.
    host::ParamValues valuesAt(std::size_t pass, int64_t frame) const;

    /// What a pass sets at all, keyed or not.
    NamedParams named(std::size_t pass) const;

    /// What has keys there: a colour where one of its components has.
    NamedParams keyed(std::size_t pass) const;

    /// Where a pass may work.
    const AreaSettings& area(std::size_t pass) const { return passes_[pass].area; }
    bool hasAreas() const;

    /// The last pass becomes the one of this name. Throws Failure where there is none.
    void endWith(const std::string& passName);

    /// A value for all frames of the last pass, which counts as named; of the others, their own.
    void setInLast(int index, const host::ParamValue& value);
    /// In all passes but the last.
    void setBeforeLast(int index, const host::ParamValue& value);

    /// The values of one frame as such a file has them: without keys.
    std::string textAt(host::Session& session, int64_t frame) const;

    /// As files of parameters have it, to the last bit. `session` is of the same effect.
    std::string text(host::Session& session) const;

private:
    std::string passText(host::Session& session, std::size_t pass) const;
    std::string headText(std::size_t pass) const;

    host::ParamValues base_;           ///< of a new session
    std::vector<PassSettings> passes_; ///< at least one, with all that its layers say
};

} // namespace kovalune::render
