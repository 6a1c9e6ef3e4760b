#include "host/AnsiCallbacks.h"
#include "host/CallbackSupport.h"
#include "host/CallbackTables.h"
#include "host/ColorConversion.h"
#include "host/HandleCallbacks.h"
#include "host/Iterate.h"
#include "host/WorldCallbacks.h"

#include <cstring>

namespace kovalune::host {

void bookUnsupported(const char* call) noexcept {
    shielded([&] {
        if (CommandContext* context = currentContext()) {
            context->host.watch.misused(std::string(call) + " is not a function of this host");
        }
    });
}

namespace {

constexpr std::size_t kPathBytes = 260; // of the effect's buffer, the end included

PF_Err convertToHls(PF_ProgPtr ref, PF_Pixel* rgb, PF_Fixed* hls) {
    return countedCall("RGBtoHLS", ref, noArguments, [&](CommandContext&) -> PF_Err {
        if (rgb == nullptr || hls == nullptr) {
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        rgbToHls(*rgb, hls);
        return PF_Err_NONE;
    });
}

PF_Err givePath(const std::string& path, void* data) {
    if (path.size() >= kPathBytes) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    std::memcpy(data, path.c_str(), path.size() + 1);
    return PF_Err_NONE;
}

PF_Err platformData(PF_ProgPtr ref, PF_PlatDataID which, void* data) {
    return countedCall(
        "get_platform_data", ref, [&] { return joined(which); },
        [&](CommandContext& context) -> PF_Err {
            const HostOptions& options = context.host.options;
            if (data == nullptr) {
                return PF_Err_BAD_CALLBACK_PARAM;
            }
            switch (which) {
            case PF_PlatData_MAIN_WND:
                std::memcpy(data, &options.mainWindow, sizeof options.mainWindow);
                return PF_Err_NONE;
            case PF_PlatData_EXE_FILE_PATH:
                return givePath(options.executablePath, data);
            case PF_PlatData_RES_FILE_PATH:
                return givePath(options.resourcePath.value_or(context.modulePath), data);
            case PF_PlatData_RES_DLLINSTANCE:
                std::memcpy(data, &context.moduleHandle, sizeof context.moduleHandle);
                return PF_Err_NONE;
            default:
                return PF_Err_BAD_CALLBACK_PARAM;
            }
        });
}

PF_Err refuseApp(PF_ProgPtr, A_long, ...) {
    bookUnsupported("app");
    return PF_Err_INVALID_CALLBACK;
}

PF_ColorCallbacks colorCallbacks() {
    PF_ColorCallbacks table{};
    table.RGBtoHLS = convertToHls;
    table.HLStoRGB = Unsupported<"HLStoRGB">::call;
    table.RGBtoYIQ = Unsupported<"RGBtoYIQ">::call;
    table.YIQtoRGB = Unsupported<"YIQtoRGB">::call;
    table.Luminance = Unsupported<"Luminance">::call;
    table.Hue = Unsupported<"Hue">::call;
    table.Lightness = Unsupported<"Lightness">::call;
    table.Saturation = Unsupported<"Saturation">::call;
    return table;
}

void fillSupported(PF_UtilCallbacks& table) {
    table.copy = copyByCallback;
    table.fill = fillByCallback;
    table.new_world = newWorldByFlags;
    table.dispose_world = disposeWorld;
    table.host_new_handle = newHandle;
    table.host_lock_handle = lockHandle;
    table.host_unlock_handle = unlockHandle;
    table.host_dispose_handle = disposeHandle;
    table.host_get_handle_size = handleSize;
    table.host_resize_handle = resizeHandle;
    table.ansi = ansiCallbacks();
    table.colorCB = colorCallbacks();
    table.get_platform_data = platformData;
    table.iterate_generic = iterateGeneric;
}

void fillRefused(PF_UtilCallbacks& table) {
    table.begin_sampling = Unsupported<"begin_sampling">::call;
    table.subpixel_sample = Unsupported<"subpixel_sample">::call;
    table.area_sample = Unsupported<"area_sample">::call;
    table.end_sampling = Unsupported<"end_sampling">::call;
    table.composite_rect = Unsupported<"composite_rect">::call;
    table.blend = Unsupported<"blend">::call;
    table.convolve = Unsupported<"convolve">::call;
    table.gaussian_kernel = Unsupported<"gaussian_kernel">::call;
    table.iterate = Unsupported<"iterate">::call;
    table.premultiply = Unsupported<"premultiply">::call;
    table.premultiply_color = Unsupported<"premultiply_color">::call;
    table.iterate_origin = Unsupported<"iterate_origin">::call;
    table.iterate_lut = Unsupported<"iterate_lut">::call;
    table.transfer_rect = Unsupported<"transfer_rect">::call;
    table.transform_world = Unsupported<"transform_world">::call;
    table.get_callback_addr = Unsupported<"get_callback_addr">::call;
    table.app = refuseApp;
    table.iterate_origin_non_clip_src = Unsupported<"iterate_origin_non_clip_src">::call;
    table.subpixel_sample16 = Unsupported<"subpixel_sample16">::call;
    table.area_sample16 = Unsupported<"area_sample16">::call;
    table.fill16 = Unsupported<"fill16">::call;
    table.premultiply_color16 = Unsupported<"premultiply_color16">::call;
    table.iterate16 = Unsupported<"iterate16">::call;
    table.iterate_origin16 = Unsupported<"iterate_origin16">::call;
    table.iterate_origin_non_clip_src16 = Unsupported<"iterate_origin_non_clip_src16">::call;
    table.get_pixel_data8 = Unsupported<"get_pixel_data8">::call;
    table.get_pixel_data16 = Unsupported<"get_pixel_data16">::call;
}

} // namespace

PF_UtilCallbacks* utilCallbacks() {
    static PF_UtilCallbacks table = [] {
        PF_UtilCallbacks made{};
        fillSupported(made);
        fillRefused(made);
        return made;
    }();
    return &table;
}

} // namespace kovalune::host
