#include "effect/share/AEUtil/WorldBasics.h"

#include "effect/share/AEUtil/SuiteHolder.h"

#include <type_traits>

namespace AEUtil {

PF_Err queryPixelFormat(PF_InData* inData, const PF_EffectWorld* world, PF_PixelFormat* format) {
    const OptionalSuite<PFWorldSuite2> suite(inData->pica_basicP, kPFWorldSuite, kPFWorldSuiteVersion2);
    if (suite.get() != nullptr) {
        return suite.get()->PF_GetPixelFormat(world, format);
    }
    const bool deep = (world->world_flags & PF_WorldFlag_DEEP) != 0;
    *format = deep ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32;
    return PF_Err_NONE;
}

PF_Err copyWorld(PF_InData* inData, PF_EffectWorld* source, PF_EffectWorld* destination) {
    SuiteHolder suites(inData->pica_basicP);
    const PFWorldTransformSuite1& transform = suites.worldTransform();
    const auto copy = inData->quality == PF_Quality_HI ? transform.copy_hq : transform.copy;
    return copy(inData->effect_ref, source, destination, nullptr, nullptr);
}

PF_Err clearWorld(PF_InData* inData, PF_EffectWorld* world) {
    SuiteHolder suites(inData->pica_basicP);
    using Coordinate = std::remove_cvref_t<decltype(PF_Rect::bottom)>;
    PF_Rect whole = {};
    whole.bottom = static_cast<Coordinate>(world->height);
    whole.right = static_cast<Coordinate>(world->width);
    return suites.fillMatte().fill(inData->effect_ref, nullptr, &whole, world);
}

} // namespace AEUtil
