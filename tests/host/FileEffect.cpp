// A small effect in a file of its own: names itself in the about text and paints every output byte 0x77.
#include "hostapi/HostApi.h"

#include <cstring>

#if defined(_WIN32)
#define EXPORTED __declspec(dllexport)
#else
#define EXPORTED __attribute__((visibility("default")))
#endif

extern "C" EXPORTED PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData*, PF_OutData* out_data, PF_ParamDef*[],
                                          PF_LayerDef* output, void*) {
    static int calls = 0;
    ++calls;
    if (cmd == PF_Cmd_GLOBAL_SETUP) {
        out_data->my_version = 77;
    }
    if (cmd == PF_Cmd_PARAMS_SETUP) {
        out_data->num_params = 1;
    }
    if (cmd == PF_Cmd_ABOUT) {
        std::memcpy(out_data->return_msg, "loaded", 7);
        out_data->out_flags = calls;
    }
    if (cmd == PF_Cmd_RENDER) {
        auto* bytes = static_cast<unsigned char*>(static_cast<void*>(output->data));
        for (A_long y = 0; y < output->height; ++y, bytes += output->rowbytes) {
            std::memset(bytes, 0x77, static_cast<std::size_t>(output->width) * sizeof(PF_Pixel));
        }
    }
    return PF_Err_NONE;
}
