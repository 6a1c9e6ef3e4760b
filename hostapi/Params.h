// Parameter records: what an effect registers with add_param and what it reads a value from.
// PF_ParamDef's size is part of the interface, so the union also holds the kinds that no one here uses.
#pragma once

#include "hostapi/Constants.h"
#include "hostapi/Types.h"

struct PF_SliderDef {
    PF_ParamValue value;
    A_char value_str[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
    A_char value_desc[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
    A_long valid_min;
    A_long valid_max;
    A_long slider_min;
    A_long slider_max;
    A_long dephault;
};

struct PF_FixedSliderDef {
    PF_Fixed value;
    A_char value_str[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
    A_char value_desc[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
    PF_Fixed valid_min;
    PF_Fixed valid_max;
    PF_Fixed slider_min;
    PF_Fixed slider_max;
    PF_Fixed dephault;
    PF_Precision precision;
    PF_ValueDisplayFlags display_flags;
};

/// Unlike the other sliders it has no `value_str`.
struct PF_FloatSliderDef {
    PF_FpLong value;
    PF_FpLong phase;
    A_char value_desc[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
    PF_FpShort valid_min;
    PF_FpShort valid_max;
    PF_FpShort slider_min;
    PF_FpShort slider_max;
    PF_FpShort dephault;
    PF_Precision precision;
    PF_ValueDisplayFlags display_flags;
    PF_FSliderFlags fs_flags;
    PF_FpShort curve_tolerance;
    PF_Boolean useExponent;
    PF_FpShort exponent;
};

struct PF_AngleDef {
    PF_Fixed value;
    PF_Fixed dephault;
    PF_Fixed valid_min;
    PF_Fixed valid_max;
};

struct PF_CheckBoxDef {
    PF_ParamValue value;
    PF_Boolean dephault;
    A_char reserved;
    A_short reserved1;
    union {
        const A_char* nameptr; ///< the effect's; must outlive the add_param call
    } u;
};

struct PF_ColorDef {
    PF_UnionablePixel value;
    PF_UnionablePixel dephault;
};

struct PF_PointDef {
    PF_Fixed x_value;
    PF_Fixed y_value;
    A_char reserved[3];
    PF_Boolean restrict_bounds;
    PF_Fixed x_dephault;
    PF_Fixed y_dephault;
};

/// `value` and `dephault` count the choices from 1; `namesptr` holds them with '|' between.
struct PF_PopupDef {
    PF_ParamValue value;
    A_short num_choices;
    A_short dephault;
    union {
        const A_char* namesptr; ///< the effect's; must outlive the add_param call
    } u;
};

struct PF_ArbitraryDef {
    A_short id;
    A_short pad;
    PF_Handle dephault;
    PF_Handle value;
    void* refconPV;
};

struct PF_PathDef {
    A_u_long path_id;
    A_long reserved0;
    A_long dephault;
};

/// PF_ParamDef.param_type tells which member holds; the start and the end of a group use none.
union PF_ParamDefUnion {
    PF_LayerDef ld;
    PF_SliderDef sd;
    PF_FixedSliderDef fd;
    PF_AngleDef ad;
    PF_CheckBoxDef bd;
    PF_ColorDef cd;
    PF_PointDef td;
    PF_PopupDef pd;
    PF_FloatSliderDef fs_d;
    PF_ArbitraryDef arb_d;
    PF_PathDef path_d;
};

struct PF_ParamDef {
    union {
        A_long id;           ///< from the effect, with add_param
        A_long change_flags; ///< PF_ChangeFlag_..., from the host or to it
    } uu;
    PF_ParamUIFlags ui_flags;
    A_short ui_width;
    A_short ui_height;
    PF_ParamType param_type;
    A_char name[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
    PF_ParamFlags flags;
    A_long unused;
    PF_ParamDefUnion u;
};

/// Entry 0 is the input layer; a null pointer ends the array.
using PF_ParamList = PF_ParamDef**;
