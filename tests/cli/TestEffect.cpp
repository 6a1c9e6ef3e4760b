// A plug-in for the tests of the command. The environment variable TEST_EFFECT tells where it fails:
// "setup", "params", "render" (each with a code and a message of two lines), "throw", "throw number" and "throw
// with message", "throw at setup", or not at all. It knows the old road of rendering and 8 bits only, and paints
// every output byte 0x77; told "empty", it takes the new road and promises an empty picture.
#include "hostapi/HostApi.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string_view>

#define EXPORTED __attribute__((visibility("default")))

namespace {

bool told(std::string_view word) {
    const char* const value = std::getenv("TEST_EFFECT");
    return value != nullptr && word == value;
}

PF_Err failWith(PF_OutData* out, PF_Err code) {
    std::strcpy(out->return_msg, "first line\rsecond\nthird");
    return code;
}

PF_Err addParam(PF_InData* in, const char* label, PF_ParamType type) {
    PF_ParamDef def{};
    def.param_type = type;
    std::strncpy(def.name, label, sizeof def.name - 1);
    if (type == PF_Param_SLIDER) {
        def.u.sd.valid_min = -5;
        def.u.sd.valid_max = 5;
    }
    return in->inter.add_param(in->effect_ref, -1, &def);
}

PF_Err addParams(PF_InData* in, PF_OutData* out) {
    addParam(in, "Twin", PF_Param_SLIDER);
    addParam(in, "twin", PF_Param_SLIDER);
    addParam(in, "Same", PF_Param_SLIDER);
    addParam(in, "Same", PF_Param_SLIDER);
    addParam(in, "Place", PF_Param_POINT);
    out->num_params = 6;
    return PF_Err_NONE;
}

PF_Err setUp(PF_OutData* out) {
    if (told("throw at setup"))
        throw 7;
    if (told("setup"))
        return failWith(out, 512);
    if (told("empty"))
        out->out_flags2 |= PF_OutFlag2_SUPPORTS_SMART_RENDER;
    return PF_Err_NONE;
}

[[noreturn]] void throwNumber(PF_OutData* out) {
    if (told("throw with message"))
        failWith(out, PF_Err_NONE);
    throw 516L;
}

void paint(PF_LayerDef* output) {
    auto* bytes = static_cast<unsigned char*>(static_cast<void*>(output->data));
    for (A_long y = 0; y < output->height; ++y, bytes += output->rowbytes)
        std::memset(bytes, 0x77, static_cast<std::size_t>(output->width) * sizeof(PF_Pixel));
}

} // namespace

extern "C" EXPORTED PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                          PF_ParamDef*[], PF_LayerDef* output, void*) {
    switch (cmd) {
    case PF_Cmd_GLOBAL_SETUP:
        return setUp(out_data);
    case PF_Cmd_PARAMS_SETUP:
        return told("params") ? failWith(out_data, 514) : addParams(in_data, out_data);
    case PF_Cmd_RENDER:
        if (told("throw"))
            throw std::runtime_error("thrown by the effect");
        if (told("throw number") || told("throw with message"))
            throwNumber(out_data);
        if (told("render"))
            return failWith(out_data, 4);
        paint(output);
        return PF_Err_NONE;
    default:
        return PF_Err_NONE;
    }
}
