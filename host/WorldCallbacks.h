// The host's world functions as plain C functions, for the callback tables and the suites alike.
#pragma once

#include "hostapi/HostApi.h"

namespace kovalune::host {

[[nodiscard]] PF_Err newWorldByFlags(PF_ProgPtr ref, A_long width, A_long height, PF_NewWorldFlags flags,
                                     PF_EffectWorld* world);
[[nodiscard]] PF_Err newWorldByFormat(PF_ProgPtr ref, A_long width, A_long height, PF_Boolean clear,
                                      PF_PixelFormat format, PF_EffectWorld* world);
[[nodiscard]] PF_Err disposeWorld(PF_ProgPtr ref, PF_EffectWorld* world);       // logged as dispose_world
[[nodiscard]] PF_Err disposeWorldSuite2(PF_ProgPtr ref, PF_EffectWorld* world); // logged as PF_DisposeWorld
[[nodiscard]] PF_Err getPixelFormat(const PF_EffectWorld* world, PF_PixelFormat* format);

[[nodiscard]] PF_Err copyByCallback(PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to,
                                    PF_Rect* fromRect, PF_Rect* toRect);
[[nodiscard]] PF_Err copyBySuite(PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect* fromRect,
                                 PF_Rect* toRect);
[[nodiscard]] PF_Err copyHqBySuite(PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to,
                                   PF_Rect* fromRect, PF_Rect* toRect);
[[nodiscard]] PF_Err fillByCallback(PF_ProgPtr ref, const PF_Pixel* colour, const PF_Rect* area,
                                    PF_EffectWorld* world);
[[nodiscard]] PF_Err fillBySuite(PF_ProgPtr ref, const PF_Pixel* colour, const PF_Rect* area,
                                 PF_EffectWorld* world);

} // namespace kovalune::host
