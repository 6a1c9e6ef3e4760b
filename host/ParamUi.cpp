#include "host/ParamUi.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <type_traits>

namespace kovalune::host {

namespace {

constexpr PF_ParamUIFlags kOpenUiFlags = PF_PUI_ECW_SEPARATOR | PF_PUI_DISABLED;
constexpr PF_ParamFlags kOpenFlags = PF_ParamFlag_COLLAPSE_TWIRLY;

constexpr A_long withBits(A_long kept, A_long given, A_long open) {
    return (kept & ~open) | (given & open);
}

template <class Member>
bool sameBytes(const Member& a, const Member& b) {
    if constexpr (std::is_pointer_v<Member>) {
        return a == b;
    } else {
        std::array<std::byte, sizeof(Member)> first{};
        std::array<std::byte, sizeof(Member)> second{};
        std::memcpy(first.data(), &a, sizeof a);
        std::memcpy(second.data(), &b, sizeof b);
        return first == second;
    }
}

/// Whether these members hold the same bytes in both, so that a NaN is the same as itself. None has padding.
template <auto... Members, class Record>
bool same(const Record& a, const Record& b) {
    return (sameBytes(a.*Members, b.*Members) && ...);
}

template <class Def>
void takeSliderLimits(Def& kept, const Def& given) {
    kept.slider_min = given.slider_min;
    kept.slider_max = given.slider_max;
}

template <class Def>
void takeSliderLook(Def& kept, const Def& given) {
    takeSliderLimits(kept, given);
    kept.precision = given.precision;
    kept.display_flags = given.display_flags;
}

bool sameLayer(const PF_LayerDef& a, const PF_LayerDef& b) {
    return same<&PF_LayerDef::reserved0, &PF_LayerDef::reserved1, &PF_LayerDef::world_flags,
                &PF_LayerDef::data, &PF_LayerDef::rowbytes, &PF_LayerDef::width, &PF_LayerDef::height,
                &PF_LayerDef::extent_hint, &PF_LayerDef::platform_ref, &PF_LayerDef::reserved_long1,
                &PF_LayerDef::reserved_long4, &PF_LayerDef::pix_aspect_ratio, &PF_LayerDef::reserved_long2,
                &PF_LayerDef::origin_x, &PF_LayerDef::origin_y, &PF_LayerDef::reserved_long3,
                &PF_LayerDef::dephault>(a, b);
}

bool sameSlider(const PF_SliderDef& a, const PF_SliderDef& b) {
    return same<&PF_SliderDef::value, &PF_SliderDef::value_str, &PF_SliderDef::value_desc,
                &PF_SliderDef::valid_min, &PF_SliderDef::valid_max, &PF_SliderDef::dephault>(a, b);
}

bool sameFixedSlider(const PF_FixedSliderDef& a, const PF_FixedSliderDef& b) {
    return same<&PF_FixedSliderDef::value, &PF_FixedSliderDef::value_str, &PF_FixedSliderDef::value_desc,
                &PF_FixedSliderDef::valid_min, &PF_FixedSliderDef::valid_max, &PF_FixedSliderDef::dephault>(
        a, b);
}

bool sameFloatSlider(const PF_FloatSliderDef& a, const PF_FloatSliderDef& b) {
    return same<&PF_FloatSliderDef::value, &PF_FloatSliderDef::phase, &PF_FloatSliderDef::value_desc,
                &PF_FloatSliderDef::valid_min, &PF_FloatSliderDef::valid_max, &PF_FloatSliderDef::dephault,
                &PF_FloatSliderDef::fs_flags, &PF_FloatSliderDef::curve_tolerance,
                &PF_FloatSliderDef::useExponent, &PF_FloatSliderDef::exponent>(a, b);
}

/// The types that carry no value of their own, and those that this host gives none, have nothing to compare.
bool sameFixedPart(const PF_ParamDef& a, const PF_ParamDef& b) {
    switch (a.param_type) {
    case PF_Param_LAYER:
        return sameLayer(a.u.ld, b.u.ld);
    case PF_Param_SLIDER:
        return sameSlider(a.u.sd, b.u.sd);
    case PF_Param_FIX_SLIDER:
        return sameFixedSlider(a.u.fd, b.u.fd);
    case PF_Param_ANGLE:
        return same<&PF_AngleDef::value, &PF_AngleDef::dephault, &PF_AngleDef::valid_min,
                    &PF_AngleDef::valid_max>(a.u.ad, b.u.ad);
    case PF_Param_CHECKBOX:
        return same<&PF_CheckBoxDef::value, &PF_CheckBoxDef::dephault, &PF_CheckBoxDef::u>(a.u.bd, b.u.bd);
    case PF_Param_COLOR:
        return same<&PF_ColorDef::value, &PF_ColorDef::dephault>(a.u.cd, b.u.cd);
    case PF_Param_POINT:
        return same<&PF_PointDef::x_value, &PF_PointDef::y_value, &PF_PointDef::restrict_bounds,
                    &PF_PointDef::x_dephault, &PF_PointDef::y_dephault>(a.u.td, b.u.td);
    case PF_Param_POPUP:
        return same<&PF_PopupDef::value, &PF_PopupDef::num_choices, &PF_PopupDef::dephault, &PF_PopupDef::u>(
            a.u.pd, b.u.pd);
    case PF_Param_FLOAT_SLIDER:
        return sameFloatSlider(a.u.fs_d, b.u.fs_d);
    default:
        return true;
    }
}

} // namespace

void takeUi(PF_ParamDef& kept, const PF_ParamDef& given) {
    kept.ui_flags = withBits(kept.ui_flags, given.ui_flags, kOpenUiFlags);
    kept.flags = withBits(kept.flags, given.flags, kOpenFlags);
    kept.ui_width = given.ui_width;
    kept.ui_height = given.ui_height;
    std::memcpy(kept.name, given.name, sizeof kept.name);
    kept.name[PF_MAX_EFFECT_PARAM_NAME_LEN] = '\0';
    if (given.param_type != kept.param_type) {
        return;
    }
    if (kept.param_type == PF_Param_SLIDER) {
        takeSliderLimits(kept.u.sd, given.u.sd);
    } else if (kept.param_type == PF_Param_FIX_SLIDER) {
        takeSliderLook(kept.u.fd, given.u.fd);
    } else if (kept.param_type == PF_Param_FLOAT_SLIDER) {
        takeSliderLook(kept.u.fs_d, given.u.fs_d);
    }
}

bool changesUiOnly(const PF_ParamDef& shown, const PF_ParamDef& given) {
    return same<&PF_ParamDef::uu, &PF_ParamDef::param_type, &PF_ParamDef::unused>(shown, given) &&
           ((shown.ui_flags ^ given.ui_flags) & ~kOpenUiFlags) == 0 &&
           ((shown.flags ^ given.flags) & ~kOpenFlags) == 0 && sameFixedPart(shown, given);
}

} // namespace kovalune::host
