#include "render/ShotSettings.h"

#include "render/ParamLabel.h"
#include "render/SettingsText.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace kovalune::render {

namespace {

void layOver(SettingTracks& below, const SettingTracks& above) {
    for (const auto& [target, track] : above) {
        below[target] = track;
    }
}

host::ParamValue between(const std::pair<const int64_t, host::ParamValue>& before,
                         const std::pair<const int64_t, host::ParamValue>& after, int64_t frame) {
    const auto* const from = std::get_if<double>(&before.second);
    const auto* const to = std::get_if<double>(&after.second);
    if (from == nullptr || to == nullptr) {
        return before.second;
    }
    const double share =
        static_cast<double>(frame - before.first) / static_cast<double>(after.first - before.first);
    return *from + (*to - *from) * share;
}

host::ParamValue valueAt(const SettingTrack& track, int64_t frame) {
    if (!track.isKeyed()) {
        return track.constant;
    }
    const auto after = track.keys.upper_bound(frame);
    if (after == track.keys.begin()) {
        return after->second;
    }
    const auto before = std::prev(after);
    return after == track.keys.end() || before->first == frame ? before->second
                                                               : between(*before, *after, frame);
}

A_u_char& channelOf(PF_Pixel& color, char component) {
    switch (component) {
    case 'r':
        return color.red;
    case 'g':
        return color.green;
    case 'b':
        return color.blue;
    default:
        return color.alpha;
    }
}

void assign(host::ParamValue& value, char component, const host::ParamValue& to) {
    if (auto* const color = std::get_if<PF_Pixel>(&value)) {
        channelOf(*color, component) = static_cast<A_u_char>(std::get<A_long>(to));
    } else {
        value = to;
    }
}

std::vector<std::string> passNames(const std::vector<SettingsLayer>& layers) {
    std::vector<std::string> names;
    for (const SettingsLayer& layer : layers) {
        for (const PassSettings& pass : layer.passes) {
            if (std::find(names.begin(), names.end(), pass.name) == names.end()) {
                names.push_back(pass.name);
            }
        }
    }
    return names;
}

[[noreturn]] void failUnknownPass(const std::string& name, const std::vector<PassSettings>& passes) {
    std::string known;
    for (const PassSettings& pass : passes) {
        known += pass.name.empty() ? "" : (known.empty() ? "" : ", ") + text::shown(pass.name);
    }
    throw text::Failure(text::FailureKind::kUsage,
                        "there is no pass " + text::inQuotes(name) +
                            (known.empty() ? "; the settings have no passes" : "; the passes are " + known));
}

void layOver(PassSettings& pass, const SettingsLayer& layer) {
    layOver(pass.tracks, layer.common.tracks);
    layOver(pass.area, layer.common.area);
    for (const PassSettings& own : layer.passes) {
        if (own.name == pass.name) {
            layOver(pass.tracks, own.tracks);
            layOver(pass.area, own.area);
        }
    }
}

} // namespace

void setValues(host::Session& session, const host::ParamValues& values) {
    for (const auto& [index, value] : values) {
        session.setValue(index, value);
    }
}

host::ParamValues valuesOf(const host::Session& session) {
    host::ParamValues values;
    const int count = static_cast<int>(session.params().size());
    for (int index = 1; index < count; ++index) {
        if (isSettable(session.params()[static_cast<std::size_t>(index)])) {
            values.emplace_back(index, session.value(index));
        }
    }
    return values;
}

ShotSettings::ShotSettings(const host::Session& session, const std::vector<SettingsLayer>& layers,
                           const SettingsLayer& options)
    : base_(valuesOf(session)) {
    for (const std::string& name : passNames(layers)) {
        passes_.push_back({name, {}, {}});
    }
    if (passes_.empty()) {
        passes_.emplace_back();
    }
    for (const PassSettings& pass : options.passes) {
        if (std::none_of(passes_.begin(), passes_.end(),
                         [&](const auto& each) { return each.name == pass.name; })) {
            failUnknownPass(pass.name, passes_);
        }
    }
    for (PassSettings& pass : passes_) {
        for (const SettingsLayer& layer : layers) {
            layOver(pass, layer);
        }
        layOver(pass, options);
    }
}

bool ShotSettings::hasKeys() const {
    return std::any_of(passes_.begin(), passes_.end(), [](const PassSettings& pass) {
        return std::any_of(pass.tracks.begin(), pass.tracks.end(),
                           [](const auto& track) { return track.second.isKeyed(); });
    });
}

bool ShotSettings::hasAreas() const {
    return std::any_of(passes_.begin(), passes_.end(),
                       [](const PassSettings& pass) { return pass.area.mask || pass.area.region; });
}

host::ParamValues ShotSettings::valuesAt(std::size_t pass, int64_t frame) const {
    host::ParamValues values = base_;
    for (auto& [index, value] : values) {
        auto track = passes_[pass].tracks.lower_bound({index, '\0'});
        for (; track != passes_[pass].tracks.end() && track->first.index == index; ++track) {
            assign(value, track->first.component, valueAt(track->second, frame));
        }
    }
    return values;
}

NamedParams ShotSettings::named(std::size_t pass) const {
    NamedParams named;
    for (const auto& [target, track] : passes_[pass].tracks) {
        named.insert(target.index);
    }
    return named;
}

NamedParams ShotSettings::keyed(std::size_t pass) const {
    NamedParams keyed;
    for (const auto& [target, track] : passes_[pass].tracks) {
        if (track.isKeyed()) {
            keyed.insert(target.index);
        }
    }
    return keyed;
}

void ShotSettings::endWith(const std::string& passName) {
    for (std::size_t pass = 0; pass < passes_.size(); ++pass) {
        if (passes_[pass].name == passName) {
            passes_.resize(pass + 1);
            return;
        }
    }
    failUnknownPass(passName, passes_);
}

void ShotSettings::setInLast(int index, const host::ParamValue& value) {
    passes_.back().tracks[{index, SettingTarget::kWhole}] = {value, {}};
}

void ShotSettings::setBeforeLast(int index, const host::ParamValue& value) {
    for (std::size_t pass = 0; pass + 1 < passes_.size(); ++pass) {
        passes_[pass].tracks[{index, SettingTarget::kWhole}] = {value, {}};
    }
}

/// A keyed colour is its frames' colours: whoever keys components alone gets them whole.
std::string ShotSettings::passText(host::Session& session, std::size_t pass) const {
    const SettingTracks& tracks = passes_[pass].tracks;
    std::string text;
    for (const auto& [index, value] : base_) {
        std::set<int64_t> frames;
        for (auto track = tracks.lower_bound({index, '\0'});
             track != tracks.end() && track->first.index == index; ++track) {
            for (const auto& [frame, key] : track->second.keys) {
                frames.insert(frame);
            }
        }
        const auto only = [index = index](int each) { return each == index; };
        if (frames.empty()) {
            setValues(session, valuesAt(pass, 0));
            text += paramsFileText(session, only);
        }
        for (const int64_t frame : frames) {
            setValues(session, valuesAt(pass, frame));
            text += paramsFileText(session, only, frame);
        }
    }
    return text;
}

/// What stands before a pass's values.
std::string ShotSettings::headText(std::size_t pass) const {
    return (hasPasses() ? "[Pass " + passes_[pass].name + "]\n" : std::string()) +
           areaText(passes_[pass].area);
}

std::string ShotSettings::text(host::Session& session) const {
    std::string text = hasPasses() || hasKeys() ? "[Version=2.0]\n" : "[Version=1.0]\n";
    for (std::size_t pass = 0; pass < passes_.size(); ++pass) {
        text += headText(pass) + passText(session, pass);
    }
    return text;
}

std::string ShotSettings::textAt(host::Session& session, int64_t frame) const {
    std::string text = hasPasses() ? "[Version=2.0]\n" : "[Version=1.0]\n";
    for (std::size_t pass = 0; pass < passes_.size(); ++pass) {
        setValues(session, valuesAt(pass, frame));
        text += headText(pass) + paramsFileText(session);
    }
    return text;
}

} // namespace kovalune::render
