// A plug-in for the tests of the command. The environment variable TEST_EFFECT tells where it fails:
// "setup", "params", "render" (each with a code and a message of two lines), "no memory" (with that message) and "no
// memory, no words", "throw", "throw number" and "throw with message", "throw at setup", or not at all. It knows the
// old road of rendering and 8 bits only, and paints every output byte 0x77; told "empty", it takes the new road and
// promises an empty picture; told "old road only", it knows the new road and fails there with code 600. Told "views",
// it has a View, one of whose names would clear a terminal, and reports the steps below.
//
// While it renders the old way it makes the file TEST_EFFECT_FRAME if there is such a variable, with the frame's
// size and its proxy factors in it. Then it may be told "steps": report 25, 50 and 75 of 100, a hundred times
// each; "late failure": the same, and fail; "cancel": report 25 of 100 until the host cancels; "deaf": report
// nothing and wait for the file TEST_EFFECT_GO.
#include "hostapi/HostApi.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

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
    if (type == PF_Param_POPUP) {
        def.u.pd.num_choices = 2;
        def.u.pd.dephault = 1;
        def.u.pd.u.namesptr = "\x1b[2JFirst\n|Second";
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
    if (told("views")) {
        addParam(in, "View", PF_Param_POPUP);
        ++out->num_params;
    }
    return PF_Err_NONE;
}

PF_Err setUp(PF_OutData* out) {
    if (told("throw at setup")) {
        throw 7;
    }
    if (told("setup")) {
        return failWith(out, 512);
    }
    if (told("empty") || told("old road only")) {
        out->out_flags2 |= PF_OutFlag2_SUPPORTS_SMART_RENDER;
    }
    return PF_Err_NONE;
}

[[noreturn]] void throwNumber(PF_OutData* out) {
    if (told("throw with message")) {
        failWith(out, PF_Err_NONE);
    }
    throw 516L;
}

void paint(PF_LayerDef* output) {
    auto* bytes = static_cast<unsigned char*>(static_cast<void*>(output->data));
    for (A_long y = 0; y < output->height; ++y, bytes += output->rowbytes) {
        std::memset(bytes, 0x77, static_cast<std::size_t>(output->width) * sizeof(PF_Pixel));
    }
}

/// Appears under its name with all that is in it.
void noteFrame(const PF_InData* in, const PF_LayerDef* output) {
    const char* const name = std::getenv("TEST_EFFECT_FRAME");
    if (name == nullptr) {
        return;
    }
    const std::string unfinished = std::string(name) + ".part";
    std::FILE* const file = std::fopen(unfinished.c_str(), "w");
    std::fprintf(file, "%dx%d of %dx%d, %d/%u, %d/%u", output->width, output->height, in->width, in->height,
                 in->downsample_x.num, in->downsample_x.den, in->downsample_y.num, in->downsample_y.den);
    std::fclose(file);
    std::rename(unfinished.c_str(), name);
}

void pauseABit() {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void awaitGo() {
    const char* const name = std::getenv("TEST_EFFECT_GO");
    for (;;) {
        if (std::FILE* const file = std::fopen(name, "r")) {
            std::fclose(file);
            return;
        }
        pauseABit();
    }
}

PF_Err reportSteps(PF_InData* in) {
    PF_Err err = PF_Err_NONE;
    for (int step = 0; step < 300 && err == PF_Err_NONE; ++step) {
        err = in->inter.progress(in->effect_ref, (step / 100 + 1) * 25, 100);
    }
    return err;
}

PF_Err awaitCancel(PF_InData* in) {
    PF_Err err = PF_Err_NONE;
    while (err == PF_Err_NONE) {
        pauseABit();
        err = in->inter.progress(in->effect_ref, 25, 100);
    }
    return err;
}

PF_Err render(PF_InData* in, PF_OutData* out, PF_LayerDef* output) {
    noteFrame(in, output);
    if (told("throw")) {
        throw std::runtime_error("thrown by the effect");
    }
    if (told("throw number") || told("throw with message")) {
        throwNumber(out);
    }
    if (told("render")) {
        return failWith(out, 512);
    }
    if (told("no memory")) {
        return failWith(out, 4);
    }
    if (told("no memory, no words")) {
        return 4;
    }
    if (told("cancel")) {
        return awaitCancel(in);
    }
    if (told("deaf")) {
        awaitGo();
    }
    paint(output);
    if (told("late failure")) {
        return reportSteps(in) == PF_Err_NONE ? failWith(out, 512) : 5;
    }
    return told("steps") || told("views") ? reportSteps(in) : PF_Err_NONE;
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
        return render(in_data, out_data, output);
    case PF_Cmd_SMART_PRE_RENDER:
        return told("old road only") ? PF_Err{600} : PF_Err{PF_Err_NONE};
    default:
        return PF_Err_NONE;
    }
}
