#include "effect/share/AEUtil/AEWorldSuite.h"

#include "effect/share/AEUtil/AEException.h"
#include "effect/share/AEUtil/SuiteHolder.h"
#include "effect/share/HostCode.h"

#include <new>

namespace AEUtil {
namespace {

// Frozen: users know failures by these.
constexpr char kFile[] = "..\\..\\..\\share\\AEUtil\\AEWorldSuite";
constexpr char kSignature[] =
    "class AEUtil::EffectWorldPtr __cdecl AEUtil::WorldSuite::newWorld(PF_InData *,long,long,char,long)";
constexpr int kFailedLine = 151;

using World1 = OptionalSuite<PFWorldSuite1>;
using World2 = OptionalSuite<PFWorldSuite2>;

void disposeWorld(WorldHolder& holder) {
    const World2 version2(holder.basic, kPFWorldSuite, kPFWorldSuiteVersion2);
    if (version2.get() != nullptr) {
        kovalune::ignored(version2.get()->PF_DisposeWorld(holder.effectRef, &holder.world));
        return;
    }
    const World1 version1(holder.basic, kPFWorldSuite, kPFWorldSuiteVersion1);
    if (version1.get() != nullptr) {
        kovalune::ignored(version1.get()->dispose_world(holder.effectRef, &holder.world));
    }
}

} // namespace

EffectWorldPtr::EffectWorldPtr(const EffectWorldPtr& other) : holder_(other.holder_), world_(other.world_) {
    if (holder_ != nullptr) {
        ++holder_->count;
    }
}

void EffectWorldPtr::release() noexcept {
    WorldHolder* const holder = std::exchange(holder_, nullptr);
    PF_EffectWorld* const world = std::exchange(world_, nullptr);
    if (holder == nullptr || --holder->count > 0) {
        return;
    }
    if (world != nullptr) {
        disposeWorld(*holder);
    }
    delete holder;
}

EffectWorldPtr WorldSuite::newWorld(PF_InData* inData, A_long width, A_long height, char clearPixels,
                                    PF_PixelFormat pixelFormat) {
    EffectWorldPtr pointer;
    pointer.holder_ = new (std::nothrow) WorldHolder{inData->pica_basicP, inData->effect_ref, {}, 1};
    if (pointer.holder_ == nullptr) {
        return pointer;
    }
    WorldHolder& holder = *pointer.holder_;

    PF_Err err = PF_Err_NONE;
    const World2 version2(holder.basic, kPFWorldSuite, kPFWorldSuiteVersion2);
    if (version2.get() != nullptr) {
        err = version2.get()->PF_NewWorld(holder.effectRef, width, height, clearPixels, pixelFormat,
                                          &holder.world);
    } else if (pixelFormat == PF_PixelFormat_ARGB32 || pixelFormat == PF_PixelFormat_ARGB64) {
        PF_NewWorldFlags flags = PF_NewWorldFlag_NONE;
        if (pixelFormat == PF_PixelFormat_ARGB64) {
            flags |= PF_NewWorldFlag_DEEP_PIXELS;
        }
        if (clearPixels != 0) {
            flags |= PF_NewWorldFlag_CLEAR_PIXELS;
        }
        SuiteHolder suites(holder.basic);
        err = suites.world1().new_world(holder.effectRef, width, height, flags, &holder.world);
    } else {
        return pointer;
    }
    if (err != PF_Err_NONE) {
        throw AEException(err, kFailedLine, kFile, "%s", kSignature);
    }
    pointer.world_ = &holder.world;
    return pointer;
}

} // namespace AEUtil
