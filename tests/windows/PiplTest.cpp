// The property list as the build makes it, before it goes into a file.

#include "effect/resources/Pipl.h"
#include "tests/windows/PiplProperties.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

TEST(Pipl, HoldsTheTwelvePropertiesOfTheEffect) {
    expectProperties(readPipl(piplBytes(PiplHost::kWindows32)), expectedProperties(false));
    expectProperties(readPipl(piplBytes(PiplHost::kWindows64)), expectedProperties(true));
}

TEST(Pipl, StartsWithAWordOneAVersionZeroAndTheCount) {
    const Bytes bytes = piplBytes(PiplHost::kWindows32);
    const Bytes start(bytes.begin(), bytes.begin() + 10);
    EXPECT_EQ(start, (Bytes{1, 0, 0, 0, 0, 0, 12, 0, 0, 0}));
}

TEST(Pipl, KeepsEveryPropertyOfA64BitFileOnAMultipleOfFour) {
    std::size_t at = 0;
    for (const PiplProperty& property : readPipl(piplBytes(PiplHost::kWindows64))) {
        EXPECT_EQ(at % 4, 0U) << property.key;
        at += 16 + property.data.size();
    }
}

} // namespace
} // namespace kovalune::test
