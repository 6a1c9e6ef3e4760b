// 32-bit hosts of other compilers keep their stack aligned to 4 bytes only; ours asks for 16 where it keeps vectors.

#include "tests/vectors/VectorFile.h"
#include "tests/windows/ShiftedStack.h"

#include "host/Host.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class StackOfTheHost : public testing::TestWithParam<uint32_t> {};

TEST_P(StackOfTheHost, NeedsNoMoreThanFourBytesOfAlignment) {
    const host::EffectModule module = host::EffectModule::load(KOVALUNE_PLUGIN);
    host::EffectModule shifted = onShiftedStack(module, GetParam());
    host::HostOptions options;
    options.threads = 3;
    host::Host host(options);
    host::Session session(host, shifted);
    ASSERT_TRUE(session.setupResult().ok()) << session.setupResult().returnMsg;
    for (const char* const name :
         {"process-many-argb-0", "process-many-ae16-0", "process-many-ae32-0", "base-smooth-argb-0",
          "base-smooth-ae16-0", "base-smooth-ae32-0", "process-one-argb-3"}) {
        SCOPED_TRACE(name);
        const test::FrameVector vector =
            test::readFrameVector(std::filesystem::path(KOVALUNE_VECTORS) / name);
        vector.applyTo(session);
        host::Image output;
        const host::RenderResult result = session.render(vector.input, output, vector.request());
        EXPECT_TRUE(result.ok()) << result.code << ": " << result.returnMsg;
        EXPECT_EQ(test::firstDifference(output, vector.expected), "");
    }
    EXPECT_TRUE(session.updateParamsUI().ok());
    EXPECT_TRUE(session.run(PF_Cmd_GLOBAL_SETDOWN).ok());
}

INSTANTIATE_TEST_SUITE_P(Shifts, StackOfTheHost, testing::Values(0U, 4U, 8U, 12U));

} // namespace
} // namespace kovalune::test
