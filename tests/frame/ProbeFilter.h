// A filter that renders nothing but notes how it was asked to.
#pragma once

#include "effect/frame/BaseFilter.h"

#include <functional>
#include <vector>

namespace kovalune::test {

class ProbeFilter : public BaseFilter {
public:
    PF_Err renderFrame(RenderSettings& settings) override {
        frames.push_back(settings);
        return onFrame ? onFrame(settings) : PF_Err{PF_Err_NONE};
    }
    PF_Err beforeRender(RenderSettings&) override {
        ++preparations;
        return beforeCode;
    }

    std::vector<RenderSettings> frames;
    std::function<PF_Err(RenderSettings&)> onFrame;
    int preparations = 0;
    PF_Err beforeCode = PF_Err_NONE;
};

} // namespace kovalune::test
