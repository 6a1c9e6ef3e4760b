// What a host keeps from one frame of the effect for the next.

#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/HostState.h"
#include "host/Session.h"
#include "hostapi/EntryPoint.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

constexpr A_long kWidth = 480;
constexpr A_long kHeight = 270;
constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight;

/// After a frame in float, whose pictures are copied into worlds of the host's own.
std::size_t bytesKept(host::Host& host, host::Session& session) {
    const host::Image input(PF_PixelFormat_ARGB128, kWidth, kHeight);
    host::Image output;
    EXPECT_TRUE(session.render(input, output).ok());
    return host.state().pool.pooledBytes();
}

class WarmMemory : public testing::Test {
protected:
    host::Host host_;
    host::EffectModule module_ = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
    host::Session session_{host_, module_};
};

TEST_F(WarmMemory, HoldsWhatAFloatFrameOf3840By2160Gives) {
    const std::size_t perPixel = (bytesKept(host_, session_) + kPixels - 1) / kPixels;
    EXPECT_GT(perPixel, 16U);
    EXPECT_LE(perPixel * 3840 * 2160, host::HostOptions().poolCapBytes);
}

TEST_F(WarmMemory, IsEnoughForTheNextFrameLikeIt) {
    const std::size_t first = bytesKept(host_, session_);
    EXPECT_EQ(bytesKept(host_, session_), first);
}

} // namespace
} // namespace kovalune::test
