#include "tests/host/ScriptedEffect.h"

#include <cstring>

namespace kovalune::test {
using namespace host;

namespace {

Script* currentScript = nullptr;

PF_Err addParam(const Call& call, A_long id, const char* name, PF_ParamType type,
                const std::function<void(PF_ParamDef&)>& fill = {}) {
    PF_ParamDef def{};
    def.uu.id = id;
    def.param_type = type;
    std::memcpy(def.name, name, std::strlen(name) + 1);
    if (fill) {
        fill(def);
    }
    return call.in.inter.add_param(call.ref(), -1, &def);
}

} // namespace

Script::Script() {
    currentScript = this;
}
Script::~Script() {
    currentScript = nullptr;
}

PF_Err Script::answer(PF_Cmd command, Call& call) const {
    const auto found = handlers_.find(command);
    return found == handlers_.end() || !found->second ? PF_Err_NONE : found->second(call);
}

PF_Err scriptedEntry(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* params[],
                     PF_LayerDef* output, void* extra) {
    Call call{*in, *out, params, output, extra};
    return currentScript->answer(command, call);
}

PF_Err registerParams(Call& call) {
    PF_Err err = addParam(call, 11, "Count", PF_Param_SLIDER, [](PF_ParamDef& def) {
        def.u.sd.valid_max = 100;
        def.u.sd.slider_max = 100;
        def.u.sd.value = 5;
        def.u.sd.dephault = 5;
    });
    if (err == 0) {
        err = addParam(call, 12, "Amount", PF_Param_FLOAT_SLIDER, [](PF_ParamDef& def) {
            def.u.fs_d.valid_max = 100.0F;
            def.u.fs_d.value = 2.5;
            def.u.fs_d.dephault = 2.5F;
        });
    }
    if (err == 0) {
        err = addParam(call, 13, "Enable", PF_Param_CHECKBOX, [](PF_ParamDef& def) {
            def.u.bd.value = 1;
            def.u.bd.dephault = 1;
        });
    }
    if (err == 0) {
        err = addParam(call, 14, "Colour", PF_Param_COLOR, [](PF_ParamDef& def) {
            def.u.cd.value = {255, 1, 2, 3};
            def.u.cd.dephault = {255, 1, 2, 3};
        });
    }
    if (err == 0) {
        const std::string choices = "One|Two|Three"; // gone when the host lists them
        err = addParam(call, 15, "View", PF_Param_POPUP, [&choices](PF_ParamDef& def) {
            def.flags = PF_ParamFlag_CANNOT_TIME_VARY;
            def.u.pd.num_choices = 3;
            def.u.pd.value = 2;
            def.u.pd.dephault = 2;
            def.u.pd.u.namesptr = choices.c_str();
        });
    }
    if (err == 0) {
        err = addParam(call, 16, "Group", PF_Param_GROUP_START);
    }
    if (err == 0) {
        err = addParam(call, 17, "", PF_Param_GROUP_END);
    }
    call.out.num_params = 8;
    return err;
}

PF_Err askForLayer(Call& call) {
    PF_PreRenderExtra& extra = call.preRender();
    extra.output->pre_render_data = call.utils().host_new_handle(16);
    if (extra.output->pre_render_data == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    PF_CheckoutResult result{};
    const PF_Err err =
        extra.cb->checkout_layer(call.ref(), 0, 0, &extra.input->output_request, call.in.current_time,
                                 call.in.time_step, call.in.time_scale, &result);
    extra.output->result_rect = result.result_rect;
    extra.output->max_result_rect = result.max_result_rect;
    return err;
}

PF_Err copyThrough(Call& call) {
    PF_SmartRenderCallbacks& cb = *call.smartRender().cb;
    PF_EffectWorld* input = nullptr;
    PF_EffectWorld* output = nullptr;
    PF_Err err = cb.checkout_layer_pixels(call.ref(), 0, &input);
    if (err == 0) {
        err = cb.checkout_output(call.ref(), &output);
    }
    if (err == 0 && input != nullptr && output != nullptr) {
        err = call.utils().copy(call.ref(), input, output, nullptr, nullptr);
    }
    if (err == 0) {
        err = cb.checkin_layer_pixels(call.ref(), 0);
    }
    return err;
}

judge::JudgeOptions Stage::audited() {
    judge::JudgeOptions options;
    options.audit = true;
    options.recordCalls = true;
    options.threads = 2;
    return options;
}

Stage::Stage(judge::JudgeOptions options) : host(std::move(options)) {
    script[PF_Cmd_PARAMS_SETUP] = registerParams;
    script[PF_Cmd_SMART_PRE_RENDER] = askForLayer;
    script[PF_Cmd_SMART_RENDER] = copyThrough;
}

Session& Stage::session() {
    if (!session_) {
        session_ = std::make_unique<Session>(host, module);
    }
    return *session_;
}

CommandResult Stage::during(const Handler& handler) {
    Session& open = session();
    script[PF_Cmd_COMPLETELY_GENERAL] = handler;
    return open.run(PF_Cmd_COMPLETELY_GENERAL);
}

Image patterned(PF_PixelFormat format, A_long width, A_long height) {
    Image image(format, width, height);
    std::size_t step = 1;
    for (A_long y = 0; y < height; ++y) {
        for (A_long x = 0; x < width; ++x, ++step) {
            if (format == PF_PixelFormat_ARGB128) {
                const auto value = static_cast<float>(step);
                image.at<PF_PixelFloat>(x, y) = {value, value / 2, value / 4, value / 8};
            } else {
                std::byte* pixel = image.row(y) + static_cast<std::size_t>(x) * bytesPerPixel(format);
                for (std::size_t i = 0; i < bytesPerPixel(format); ++i) {
                    pixel[i] = static_cast<std::byte>(step * 7 + i * 31);
                }
            }
        }
    }
    return image;
}

std::byte* worldRow(const PF_EffectWorld& world, A_long y) {
    std::byte* first = static_cast<std::byte*>(static_cast<void*>(world.data));
    return first + static_cast<std::ptrdiff_t>(y) * world.rowbytes;
}

} // namespace kovalune::test
