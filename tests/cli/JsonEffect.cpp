// A plug-in with parameters of every kind: nested groups, texts that are not UTF-8, limits that are no round
// numbers. It renders nothing.
#include "hostapi/HostApi.h"

#include <cstring>

#define EXPORTED __attribute__((visibility("default")))

namespace {

void add(PF_InData* in, PF_ParamType type, const char* label, A_long id, PF_ParamDef def = {}) {
    def.param_type = type;
    def.uu.id = id;
    std::strncpy(def.name, label, sizeof def.name - 1);
    in->inter.add_param(in->effect_ref, -1, &def);
}

PF_ParamDef slider() {
    PF_ParamDef def{};
    def.u.sd.valid_min = -2147483647;
    def.u.sd.valid_max = 2147483647;
    def.u.sd.slider_min = -5;
    def.u.sd.slider_max = 5;
    def.u.sd.dephault = 3;
    return def;
}

PF_ParamDef floatSlider() {
    PF_ParamDef def{};
    def.u.fs_d.valid_min = 0.1F;
    def.u.fs_d.valid_max = 1000.0F;
    def.u.fs_d.slider_min = 0.25F;
    def.u.fs_d.slider_max = 99.9F;
    def.u.fs_d.value = 0.3;
    def.u.fs_d.dephault = 0.3F;
    def.u.fs_d.precision = 2;
    return def;
}

PF_ParamDef popup() {
    PF_ParamDef def{};
    def.u.pd.num_choices = 4;
    def.u.pd.dephault = 3;
    def.u.pd.u.namesptr = "Plain|(-|\x83\x4a\xff|\"Quoted\"\n";
    return def;
}

PF_ParamDef color() {
    PF_ParamDef def{};
    def.u.cd.dephault.alpha = 128;
    def.u.cd.dephault.red = 10;
    def.u.cd.dephault.green = 171;
    def.u.cd.dephault.blue = 255;
    return def;
}

PF_Err addParams(PF_InData* in, PF_OutData* out) {
    add(in, PF_Param_SLIDER, "Whole", 7, slider());
    add(in, PF_Param_GROUP_START, "Outer", 20);
    add(in, PF_Param_FLOAT_SLIDER, "Number", -1, floatSlider());
    add(in, PF_Param_GROUP_START, "\x83\x4a\x83\x89", 21);
    add(in, PF_Param_POPUP, "Choice", 22, popup());
    add(in, PF_Param_GROUP_END, "", 23);
    add(in, PF_Param_COLOR, "\xe8\x89\xb2", 24, color());
    add(in, PF_Param_GROUP_END, "", 25);
    add(in, PF_Param_POINT, "Place", 26);
    add(in, PF_Param_GROUP_END, "", 27); // of no group
    out->num_params = 11;
    return PF_Err_NONE;
}

} // namespace

extern "C" EXPORTED PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                          PF_ParamDef*[], PF_LayerDef*, void*) {
    switch (cmd) {
    case PF_Cmd_ABOUT:
        std::strcpy(out_data->return_msg, "First\r\rsecond\nthird \x83\r\n\tfourth");
        return PF_Err_NONE;
    case PF_Cmd_GLOBAL_SETUP:
        out_data->my_version = PF_VERSION(12, 3, 4, PF_Stage_BETA, 511);
        out_data->out_flags = PF_OutFlag_PIX_INDEPENDENT | 0x8;
        return PF_Err_NONE;
    case PF_Cmd_PARAMS_SETUP:
        return addParams(in_data, out_data);
    default:
        return PF_Err_NONE;
    }
}
