#include "effect/params/EnableRules.h"

#include "effect/params/ParamGetter.h"
#include "effect/params/ParamRegistry.h"
#include "effect/share/AEUtil/SuiteHolder.h"
#include "effect/share/HostCode.h"

#include <cstring>
#include <initializer_list>
#include <iterator>

namespace kovalune {
namespace {

enum { kNoParamUtils }; // thrown as it is: a missing suite here is no host code

/// Index 0, the input layer, for an id that the table lacks: the rules below name many such ids. Frozen, since the host is
/// told of each.
int32_t indexOf(int32_t id) {
    const BaseParam* const param = paramRegistry().findById(id);
    return param != nullptr ? param->paramIndex : 0;
}

class EnableRules {
public:
    EnableRules(PF_InData* inData, PF_ParamDef** params)
        : inData_(inData), params_(params),
          suite_(inData->pica_basicP, kPFParamUtilsSuite, kPFParamUtilsSuiteVersions) {
        if (suite_.get() == nullptr) {
            throw kNoParamUtils;
        }
    }

    void apply() {
        for (const int32_t group : kGroups) {
            groupSwitch(group);
        }
        keepProcessSwitches();
        for (const int32_t group : kGroups) {
            colorSwitches(group);
        }
    }

private:
    static constexpr int32_t kGroups[] = {50, 100, 150, 200, 250};

    /// Whether the first word of a parameter's value is not 0.
    bool on(int32_t id) const {
        int32_t word = 0;
        std::memcpy(&word, &params_[indexOf(id)]->u, sizeof word);
        return word != 0;
    }

    void setEnabled(bool enabled, const int32_t* indices, int count) {
        for (int i = 0; i < count; ++i) {
            RoomyParamDef copy(*params_[indices[i]]);
            if (enabled) {
                copy.ui_flags &= ~PF_PUI_DISABLED;
            } else {
                copy.ui_flags |= PF_PUI_DISABLED;
            }
            ignored(suite_.get()->PF_UpdateParamUI(inData_->effect_ref, indices[i], &copy));
        }
    }

    /// A Process group's check box is the group's master switch.
    void groupSwitch(int32_t group) {
        constexpr int32_t kOffsets[] = {3,  4,  5,  7,  8,  6,  9,  10, 11, 12,
                                        13, 14, 15, 16, 17, 18, 19, 20, 21, 22};
        int32_t indices[std::size(kOffsets)];
        for (std::size_t i = 0; i < std::size(kOffsets); ++i) {
            indices[i] = indexOf(group + kOffsets[i]);
        }
        setEnabled(on(group + 2), indices, static_cast<int>(std::size(kOffsets)));
    }

    /// A stage can keep only what an earlier one has made.
    void keepProcessSwitches() {
        const int32_t keep2 = indexOf(160);
        const int32_t keep3 = indexOf(210);
        const int32_t keep4 = indexOf(260);
        setEnabled(on(102) && on(152), &keep2, 1);
        setEnabled((on(102) || on(152)) && on(202), &keep3, 1);
        setEnabled((on(102) || on(152) || on(202)) && on(252), &keep4, 1);
    }

    /// A colour and its range follow the colour's check box, where there is one, and the group's.
    void colorSwitches(int32_t group) {
        for (int32_t k = 0; k < 4; ++k) {
            const int32_t enableId = group + 11 + 3 * k;
            const int32_t indices[] = {indexOf(enableId + 1), indexOf(enableId + 2)};
            setEnabled(on(enableId) && on(group + 2), indices, 2);
        }
    }

    PF_InData* inData_;
    PF_ParamDef** params_;
    AEUtil::OptionalSuite<PFParamUtilsSuite1> suite_;
};

} // namespace

PF_Err updateParamEnables(PF_InData* inData, PF_ParamDef** params) {
    EnableRules(inData, params).apply();
    return PF_Err_NONE;
}

} // namespace kovalune
