// A small frame that passes through everything the effect does, for tests that break the host under it.
#pragma once

#include "host/EffectModule.h"
#include "host/Session.h"
#include "host/judge/JudgedHost.h"

#include <ostream>
#include <string>
#include <vector>

namespace kovalune::test {

struct FaultScene {
    std::string name;
    PF_PixelFormat format;
    host::RenderFlow flow;
    double blurAmount; ///< "Blur Amount": 10 smooths boundaries first, 20 does not, 0 copies
    A_long view;
    A_long repeat = 3;               ///< of Base
    std::vector<int> processes = {}; ///< numbers of the Process stages that are on, with a repeat of 1
    int keeping = 0;                 ///< the one of them with "Keep Process"
};

/// Whether boundaries are smoothed in a Process stage; the others extend too far for that.
inline bool smoothsBoundaries(int process) {
    return process % 2 != 0;
}

std::ostream& operator<<(std::ostream& out, const FaultScene& scene);

/// Every scene: formats, roads to a frame, kinds of blur, views, Process stages.
const std::vector<FaultScene>& faultScenes();

/// The effect as it is linked in; under Windows the plug-in's finished file, which nothing else tests so thoroughly.
host::EffectModule testedEffect();

/// A host that watches closely and runs iterations on the calling thread, so that its n-th call is always the
/// same.
host::judge::JudgeOptions strictOptions();

/// Two flat regions with a hole, 12 by 9 pixels.
host::Image scenePicture(PF_PixelFormat format);

void applyScene(host::Session& session, const FaultScene& scene);

host::RenderRequest requestOf(const FaultScene& scene);

} // namespace kovalune::test
