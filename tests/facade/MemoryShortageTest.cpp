// The calls without memory: an allocation of theirs fails.
#include "tests/facade/OwnPicture.h"
#include "tests/support/AllocationControl.h"

namespace kovalune::test {
namespace {

class FacadeMemory : public testing::Test {
protected:
    FacadeMemory()
        : source_(PF_PixelFormat_ARGB64, 23, 18, 1), destination_(PF_PixelFormat_ARGB64, 23, 18, 0),
          input_(host_, PF_PixelFormat_ARGB64, 23, 18) {
        Random random(5);
        write(flatPicture(PF_PixelFormat_ARGB64, 23, 18, random), input_);
        source_.copyFrom(input_);
    }

    StrictHost host_;
    OwnPicture source_;
    OwnPicture destination_;
    TestWorld input_;
};

TEST_F(FacadeMemory, OfTheMapMissingLeavesTheCopy) {
    {
        const ScratchPlan plan(1);
        EXPECT_EQ(smoothPicture(source_.view(), destination_.writable(), {}), PF_Err_OUT_OF_MEMORY);
        EXPECT_TRUE(plan.hasFailed());
    }
    EXPECT_TRUE(destination_.pixelsEqual(input_));
    EXPECT_EQ(smoothPicture(source_.view(), destination_.writable(), {}), PF_Err_NONE);
    EXPECT_FALSE(destination_.pixelsEqual(input_));
}

TEST_F(FacadeMemory, MissingLeavesTheFlagsAsTheyWere) {
    const std::vector<uint8_t> before(std::size_t{23} * 18, 0xff);
    const std::pair<SmoothKey, int> requests[] = {{SmoothKey::kNone, 1}, {SmoothKey::kRemove, 2}};
    for (const auto& [key, count] : requests) {
        for (int failing = 1; failing <= count; ++failing) {
            std::vector<uint8_t> flags = before;
            const ScratchPlan plan(failing);
            EXPECT_EQ(edgeFlags(source_.view(), {.key = key}, flags), PF_Err_OUT_OF_MEMORY);
            EXPECT_TRUE(plan.hasFailed());
            EXPECT_EQ(flags, before);
        }
    }
}

} // namespace
} // namespace kovalune::test
