#include "host/WorldCallbacks.h"

#include "host/CallbackSupport.h"
#include "host/WorldOps.h"

namespace kovalune::host {

namespace {

bool pictureFormat(PF_PixelFormat format) {
    return format == PF_PixelFormat_ARGB32 || format == PF_PixelFormat_ARGB64 ||
           format == PF_PixelFormat_ARGB128;
}

std::string sizeText(const PF_EffectWorld* world) {
    return world == nullptr ? "null" : std::to_string(world->width) + "x" + std::to_string(world->height);
}

PF_Err misused(CommandContext& context, const std::string& text) {
    context.host.watch.misused(text);
    return PF_Err_BAD_CALLBACK_PARAM;
}

PF_Err newWorld(const char* call, PF_ProgPtr ref, WorldRequest request, PF_EffectWorld* world) {
    const auto arguments = [&] { return joined(request.width, request.height, request.clear); };
    return countedCall(call, ref, arguments, [&](CommandContext& context) -> PF_Err {
        if (world == nullptr || !pictureFormat(request.format)) {
            return misused(context, joined(call, "with a null world or an unknown format"));
        }
        request.effectMade = true;
        handOver(context, world);
        return context.host.worlds.make(request, context.host.options, *world);
    });
}

PF_Err dispose(const char* call, PF_ProgPtr ref, PF_EffectWorld* world) {
    const auto arguments = [&] { return sizeText(world); };
    const auto body = [&](CommandContext& context) -> PF_Err {
        if (world == nullptr || !context.host.worlds.dispose(*world, true, context.host.options)) {
            return misused(context, joined(call, "of an unknown world"));
        }
        *world = PF_EffectWorld{};
        return PF_Err_NONE;
    };
    return countedCall(call, ref, arguments, body, [&](CommandContext& context) {
        if (world != nullptr) {
            context.host.worlds.excuse(*world);
        }
    });
}

PF_Err copyWorlds(const char* call, const char* source, PF_ProgPtr ref, const PF_EffectWorld* from,
                  const PF_EffectWorld* to, const PF_Rect* fromRect, const PF_Rect* toRect) {
    const auto arguments = [&] { return joined(source, sizeText(from), sizeText(to)); };
    return countedCall(call, ref, arguments, [&](CommandContext& context) -> PF_Err {
        const std::optional<WorldInfo> fromInfo = context.host.worlds.find(from);
        const std::optional<WorldInfo> toInfo = context.host.worlds.find(to);
        if (!fromInfo || !toInfo) {
            return misused(context, joined(call, "with an unknown world"));
        }
        return copyPixels(context.host.rowWork, *fromInfo, *toInfo, fromRect, toRect);
    });
}

PF_Err fill(const char* source, PF_ProgPtr ref, const PF_Pixel* colour, const PF_Rect* area,
            const PF_EffectWorld* world) {
    const auto arguments = [&] {
        return joined(source, sizeText(world), colour == nullptr ? "clear" : "colour");
    };
    return countedCall("fill", ref, arguments, [&](CommandContext& context) -> PF_Err {
        const std::optional<WorldInfo> info = context.host.worlds.find(world);
        if (!info) {
            return misused(context, "fill of an unknown world");
        }
        fillPixels(context.host.rowWork, *info, colour, area);
        return PF_Err_NONE;
    });
}

} // namespace

PF_Err newWorldByFlags(PF_ProgPtr ref, A_long width, A_long height, PF_NewWorldFlags flags,
                       PF_EffectWorld* world) {
    const bool deep = (flags & PF_NewWorldFlag_DEEP_PIXELS) != 0;
    const PF_PixelFormat format = deep ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32;
    const bool clear = (flags & PF_NewWorldFlag_CLEAR_PIXELS) != 0;
    return newWorld("new_world", ref, {format, width, height, clear}, world);
}

PF_Err newWorldByFormat(PF_ProgPtr ref, A_long width, A_long height, PF_Boolean clear, PF_PixelFormat format,
                        PF_EffectWorld* world) {
    return newWorld("PF_NewWorld", ref, {format, width, height, clear != 0}, world);
}

PF_Err disposeWorld(PF_ProgPtr ref, PF_EffectWorld* world) {
    return dispose("dispose_world", ref, world);
}

PF_Err disposeWorldSuite2(PF_ProgPtr ref, PF_EffectWorld* world) {
    return dispose("PF_DisposeWorld", ref, world);
}

PF_Err getPixelFormat(const PF_EffectWorld* world, PF_PixelFormat* format) {
    const auto arguments = [&] { return sizeText(world); };
    return countedCall("PF_GetPixelFormat", arguments, [&](CommandContext& context) -> PF_Err {
        const std::optional<WorldInfo> info = context.host.worlds.find(world);
        if (!info || format == nullptr) {
            return misused(context, "PF_GetPixelFormat of an unknown world");
        }
        *format = context.host.manners.formatTold(info->format);
        return PF_Err_NONE;
    });
}

PF_Err copyByCallback(PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect* fromRect,
                      PF_Rect* toRect) {
    return copyWorlds("copy", "callback", ref, from, to, fromRect, toRect);
}

PF_Err copyBySuite(PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect* fromRect,
                   PF_Rect* toRect) {
    return copyWorlds("copy", "suite", ref, from, to, fromRect, toRect);
}

PF_Err copyHqBySuite(PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect* fromRect,
                     PF_Rect* toRect) {
    return copyWorlds("copy_hq", "suite", ref, from, to, fromRect, toRect);
}

PF_Err fillByCallback(PF_ProgPtr ref, const PF_Pixel* colour, const PF_Rect* area, PF_EffectWorld* world) {
    return fill("callback", ref, colour, area, world);
}

PF_Err fillBySuite(PF_ProgPtr ref, const PF_Pixel* colour, const PF_Rect* area, PF_EffectWorld* world) {
    return fill("suite", ref, colour, area, world);
}

} // namespace kovalune::host
