// The least of a host that the smoothing needs, for pictures in a test's own memory: a copy that follows
// `rowbytes`, and worlds in heap blocks that end with their last byte, so that the address sanitizer sees
// any access past them.
#pragma once

#include "hostapi/HostApi.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace kovalune::test {

class BareHost {
public:
    explicit BareHost(PF_PixelFormat format);
    BareHost(const BareHost&) = delete;
    BareHost& operator=(const BareHost&) = delete;

    PF_InData* in() { return &in_; }

    PF_Err copyCode = PF_Err_NONE; ///< if not 0, `copy` gives up after its first row
    PF_Err newWorldCode = PF_Err_NONE;
    PF_Err disposeCode = PF_Err_NONE; ///< the world is disposed of all the same
    std::string missingSuite;
    int32_t worldPadding = 0; ///< bytes between the rows of new worlds

    int copies = 0;
    int worldsMade = 0;
    std::size_t worldsAlive() const { return worlds_.size(); }
    A_long lastWidth = 0; ///< of the world made last
    A_long lastHeight = 0;

private:
    static BareHost& from(PF_ProgPtr ref);
    static int32_t acquire(const char* name, int32_t version, const void** suite);
    static PF_Err copy(PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect* fromRect,
                       PF_Rect* toRect);
    static PF_Err newWorld(PF_ProgPtr ref, A_long width, A_long height, PF_NewWorldFlags flags,
                           PF_EffectWorld* world);
    static PF_Err disposeWorld(PF_ProgPtr ref, PF_EffectWorld* world);

    PF_PixelFormat format_;
    SPBasicSuite basic_ = {};
    PFWorldTransformSuite1 transform_ = {};
    PFWorldSuite1 world_ = {};
    PF_InData in_ = {};
    std::map<const void*, std::unique_ptr<uint8_t[]>> worlds_;
};

} // namespace kovalune::test
