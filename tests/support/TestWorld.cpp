#include "tests/support/TestWorld.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace kovalune::test {

TestWorld::TestWorld(StrictHost& host, PF_PixelFormat format, int32_t width, int32_t height)
    : host_(host.state()), format_(format) {
    const PF_Err err = host_.worlds.make({format, width, height}, host_.options, world_);
    if (err != PF_Err_NONE) {
        throw std::runtime_error("the host refuses a world, code " + std::to_string(err));
    }
}

TestWorld::~TestWorld() {
    EXPECT_TRUE(host_.worlds.dispose(world_, false, host_.options));
}

} // namespace kovalune::test
