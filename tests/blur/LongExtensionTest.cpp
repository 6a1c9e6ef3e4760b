// The colour extension in lines as long as the longest side, against its plain twin.
#include "tests/blur/ColorExtensionScene.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class LongExtension : public testing::TestWithParam<ExtensionDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, LongExtension, testing::ValuesIn(kExtensionDrivers), extensionName);

TEST_P(LongExtension, ReachesAsFarAtTheEndsAsAnywhere) {
    constexpr int32_t kSide = 32767;
    Random random(5);
    for (const bool isHigh : {false, true}) {
        const int32_t width = isHigh ? 2 : kSide;
        const int32_t height = isHigh ? kSide : 2;
        PlainExtension job{wholeRect(width, height), Mask(width, height), Mask(width, height), 999.5, false};
        for (const int32_t at : {0, 1, 700, 16384, kSide - 40, kSide - 1}) {
            job.seed.at(isHigh ? 0 : at, isHigh ? at : 0) = 1;
        }
        for (int32_t at = 0; at < kSide; ++at) {
            job.limit.at(isHigh ? at % 2 : at, isHigh ? at : at % 2) = 1;
            job.limit.at(isHigh ? 0 : at, isHigh ? at : 0) = 1;
        }
        host::judge::JudgeOptions options = strictOptions();
        options.allowHuge = true;
        options.iterations = 3;
        ExtensionScene scene(GetParam(), options, job, random);
        expectLikeThePlainOne(GetParam(), scene);
    }
}

} // namespace
} // namespace kovalune::test
