// The parameters of one session: the definitions that the effect registered, and their values over time.
// Safe to use from several threads, but for definitions().
#pragma once

#include "host/ParamValue.h"
#include "hostapi/HostApi.h"

#include <deque>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace kovalune::host {

/// The value that a definition holds. Throws HostError for types without one.
ParamValue valueOf(const PF_ParamDef& def);

class ParamStore {
public:
    ParamStore(); ///< holds entry 0, the input layer

    /// The same parameters with `values` in place of its own. The other one must outlive this one, whose texts are the other's.
    /// Throws HostError as setValue does.
    ParamStore(const ParamStore& other, const ParamValues& values);

    /// The host's add_param: an index of -1 appends, as does the number of entries; others are INVALID_INDEX.
    /// The value starts at the default. Texts behind pointers are copied.
    [[nodiscard]] PF_Err add(PF_ParamIndex index, const PF_ParamDef& def);

    /// Takes over what takeUi does.
    [[nodiscard]] PF_Err updateUi(PF_ParamIndex index, const PF_ParamDef& def);

    A_long size() const;

    /// With the value at that time. The index must be in range.
    PF_ParamDef definitionAt(A_long index, A_long time) const;
    std::vector<PF_ParamDef> definitionsAt(A_long time) const;

    const std::vector<PF_ParamDef>& definitions() const { return definitions_; }

    /// These throw HostError as Session says.
    void setValue(int index, ParamValue value);
    void setKey(int index, A_long time, ParamValue value);
    ParamValue value(int index, A_long time) const;
    ParamValue defaultValue(int index) const;
    A_long uiFlags(int index) const;

private:
    struct Track {
        ParamValue constant = A_long{0};
        std::vector<std::pair<A_long, ParamValue>> keys; ///< by time

        const ParamValue& at(A_long time) const;
    };

    const A_char* keepText(const A_char* text);
    PF_ParamDef filled(std::size_t index, A_long time) const;           ///< with mutex_ held, as all below
    std::size_t checkedIndex(int index) const;                          ///< throws HostError
    std::size_t checkedValue(int index, const ParamValue& value) const; ///< likewise

    mutable std::mutex mutex_;
    std::vector<PF_ParamDef> definitions_;
    std::vector<Track> tracks_;
    std::deque<std::string> texts_; ///< a deque keeps their addresses
};

} // namespace kovalune::host
