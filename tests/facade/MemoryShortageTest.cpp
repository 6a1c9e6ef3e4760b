// The calls without memory: this program's own non-throwing array allocation fails where it is told to.

#include "tests/facade/OwnPicture.h"

#include <new>

namespace {

int failingRequest = 0; ///< counts down to the request that fails; 0: none

} // namespace

void* operator new[](std::size_t bytes, const std::nothrow_t& /*tag*/) noexcept {
    if (failingRequest > 0 && --failingRequest == 0) {
        return nullptr;
    }
    try {
        return ::operator new[](bytes);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

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
    failingRequest = 1;
    EXPECT_EQ(smoothPicture(source_.view(), destination_.writable(), {}), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(failingRequest, 0);
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
            failingRequest = failing;
            EXPECT_EQ(edgeFlags(source_.view(), {.key = key}, flags), PF_Err_OUT_OF_MEMORY);
            EXPECT_EQ(failingRequest, 0);
            EXPECT_EQ(flags, before);
        }
    }
}

} // namespace
} // namespace kovalune::test
