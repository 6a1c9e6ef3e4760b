#include "host/ParamStore.h"

#include "host/HostError.h"
#include "host/ParamUi.h"

#include <algorithm>

namespace kovalune::host {

namespace {

bool knownType(PF_ParamType type) {
    return type >= PF_Param_LAYER && type <= PF_Param_BUTTON;
}

bool holdsValue(PF_ParamType type) {
    return type == PF_Param_SLIDER || type == PF_Param_CHECKBOX || type == PF_Param_POPUP ||
           type == PF_Param_FLOAT_SLIDER || type == PF_Param_COLOR;
}

/// Where a registered value lies outside its valid range, as one read from a damaged settings file may, the
/// nearest one inside it; NaN becomes the lower limit.
template <class Value, class Limit>
Value withinLimits(Value value, Limit lowest, Limit highest) {
    const auto low = static_cast<Value>(lowest);
    const auto high = static_cast<Value>(highest);
    return value >= low ? std::min(value, std::max(low, high)) : low;
}

/// The float slider's value and not its `dephault`, which is the same number in single precision.
ParamValue defaultOf(const PF_ParamDef& def) {
    switch (def.param_type) {
    case PF_Param_SLIDER:
        return withinLimits(def.u.sd.dephault, def.u.sd.valid_min, def.u.sd.valid_max);
    case PF_Param_CHECKBOX:
        return static_cast<A_long>(def.u.bd.dephault != 0 ? 1 : 0);
    case PF_Param_POPUP:
        return withinLimits(static_cast<A_long>(def.u.pd.dephault), A_long{1},
                            static_cast<A_long>(def.u.pd.num_choices));
    case PF_Param_FLOAT_SLIDER:
        return withinLimits(def.u.fs_d.value, def.u.fs_d.valid_min, def.u.fs_d.valid_max);
    case PF_Param_COLOR:
        return def.u.cd.dephault;
    default:
        throw HostError("parameter without a value");
    }
}

/// The value's kind must be the one of the definition's type.
void putValue(PF_ParamDef& def, const ParamValue& value) {
    switch (def.param_type) {
    case PF_Param_SLIDER:
        def.u.sd.value = std::get<A_long>(value);
        break;
    case PF_Param_CHECKBOX:
        def.u.bd.value = std::get<A_long>(value);
        break;
    case PF_Param_POPUP:
        def.u.pd.value = std::get<A_long>(value);
        break;
    case PF_Param_FLOAT_SLIDER:
        def.u.fs_d.value = std::get<double>(value);
        break;
    case PF_Param_COLOR:
        def.u.cd.value = std::get<PF_Pixel>(value);
        break;
    default:
        break;
    }
}

} // namespace

ParamValue valueOf(const PF_ParamDef& def) {
    switch (def.param_type) {
    case PF_Param_SLIDER:
        return def.u.sd.value;
    case PF_Param_CHECKBOX:
        return def.u.bd.value;
    case PF_Param_POPUP:
        return def.u.pd.value;
    case PF_Param_FLOAT_SLIDER:
        return def.u.fs_d.value;
    case PF_Param_COLOR:
        return def.u.cd.value;
    default:
        throw HostError("parameter without a value");
    }
}

/// A key holds until the next one, and the first one holds before itself too.
const ParamValue& ParamStore::Track::at(A_long time) const {
    if (keys.empty()) {
        return constant;
    }
    const auto after = std::upper_bound(keys.begin(), keys.end(), time,
                                        [](A_long t, const auto& key) { return t < key.first; });
    return after == keys.begin() ? after->second : std::prev(after)->second;
}

ParamStore::ParamStore() {
    PF_ParamDef layer{};
    layer.param_type = PF_Param_LAYER;
    definitions_.push_back(layer);
    tracks_.emplace_back();
}

ParamStore::ParamStore(const ParamStore& other, const ParamValues& values) {
    {
        const std::lock_guard lock(other.mutex_);
        definitions_ = other.definitions_;
        tracks_ = other.tracks_;
    }
    for (const auto& [index, value] : values) {
        setValue(index, value);
    }
}

const A_char* ParamStore::keepText(const A_char* text) {
    return text == nullptr ? nullptr : texts_.emplace_back(text).c_str();
}

PF_Err ParamStore::add(PF_ParamIndex index, const PF_ParamDef& def) {
    const std::lock_guard lock(mutex_);
    if (index != -1 && index != static_cast<PF_ParamIndex>(definitions_.size())) {
        return PF_Err_INVALID_INDEX;
    }
    if (!knownType(def.param_type)) {
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
    PF_ParamDef kept = def;
    kept.name[PF_MAX_EFFECT_PARAM_NAME_LEN] = '\0';
    if (kept.param_type == PF_Param_CHECKBOX) {
        kept.u.bd.u.nameptr = keepText(def.u.bd.u.nameptr);
    }
    if (kept.param_type == PF_Param_POPUP) {
        kept.u.pd.u.namesptr = keepText(def.u.pd.u.namesptr);
    }
    Track track;
    if (holdsValue(kept.param_type)) {
        track.constant = defaultOf(kept);
        putValue(kept, track.constant);
    }
    definitions_.push_back(kept);
    tracks_.push_back(std::move(track));
    return PF_Err_NONE;
}

PF_Err ParamStore::updateUi(PF_ParamIndex index, const PF_ParamDef& def) {
    const std::lock_guard lock(mutex_);
    if (index < 0 || index >= static_cast<PF_ParamIndex>(definitions_.size())) {
        return PF_Err_INVALID_INDEX;
    }
    takeUi(definitions_[static_cast<std::size_t>(index)], def);
    return PF_Err_NONE;
}

A_long ParamStore::size() const {
    const std::lock_guard lock(mutex_);
    return static_cast<A_long>(definitions_.size());
}

PF_ParamDef ParamStore::filled(std::size_t index, A_long time) const {
    PF_ParamDef def = definitions_[index];
    if (holdsValue(def.param_type)) {
        putValue(def, tracks_[index].at(time));
    }
    return def;
}

PF_ParamDef ParamStore::definitionAt(A_long index, A_long time) const {
    const std::lock_guard lock(mutex_);
    return filled(static_cast<std::size_t>(index), time);
}

std::vector<PF_ParamDef> ParamStore::definitionsAt(A_long time) const {
    const std::lock_guard lock(mutex_);
    std::vector<PF_ParamDef> result;
    result.reserve(definitions_.size());
    for (std::size_t index = 0; index < definitions_.size(); ++index) {
        result.push_back(filled(index, time));
    }
    return result;
}

std::size_t ParamStore::checkedIndex(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= definitions_.size()) {
        throw HostError("no parameter " + std::to_string(index));
    }
    return static_cast<std::size_t>(index);
}

std::size_t ParamStore::checkedValue(int index, const ParamValue& value) const {
    const std::size_t place = checkedIndex(index);
    if (defaultOf(definitions_[place]).index() != value.index()) {
        throw HostError("a value of the wrong type for parameter " + std::to_string(index));
    }
    return place;
}

void ParamStore::setValue(int index, ParamValue value) {
    const std::lock_guard lock(mutex_);
    Track& track = tracks_[checkedValue(index, value)];
    track.constant = value;
    track.keys.clear();
}

void ParamStore::setKey(int index, A_long time, ParamValue value) {
    const std::lock_guard lock(mutex_);
    const std::size_t place = checkedValue(index, value);
    if ((definitions_[place].flags & PF_ParamFlag_CANNOT_TIME_VARY) != 0) {
        throw HostError("parameter " + std::to_string(index) + " cannot vary with time");
    }
    auto& keys = tracks_[place].keys;
    const auto found = std::lower_bound(keys.begin(), keys.end(), time,
                                        [](const auto& key, A_long t) { return key.first < t; });
    if (found != keys.end() && found->first == time) {
        found->second = value;
    } else {
        keys.insert(found, {time, value});
    }
}

ParamValue ParamStore::value(int index, A_long time) const {
    const std::lock_guard lock(mutex_);
    return valueOf(filled(checkedIndex(index), time));
}

ParamValue ParamStore::defaultValue(int index) const {
    const std::lock_guard lock(mutex_);
    return defaultOf(definitions_[checkedIndex(index)]);
}

A_long ParamStore::uiFlags(int index) const {
    const std::lock_guard lock(mutex_);
    return definitions_[checkedIndex(index)].ui_flags;
}

} // namespace kovalune::host
