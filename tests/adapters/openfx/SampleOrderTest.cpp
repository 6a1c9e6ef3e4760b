#include "adapters/openfx/SampleOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <vector>

namespace kovalune::test {
using namespace openfx;
namespace {

using Bytes = std::vector<std::byte>;

constexpr std::size_t kMargin = 64;
constexpr std::size_t kMostPixels = 17;

/// All different from their neighbours.
Bytes counted(unsigned first) {
    Bytes bytes(2 * kMargin + kMostPixels * 16);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::byte>(first + i * 7 + i / 256);
    }
    return bytes;
}

/// An order, bytes of a sample, and those of a picture: a small one and one far larger than caches.
class RowTurns : public testing::TestWithParam<std::tuple<SampleOrder, std::size_t, std::size_t>> {};

INSTANTIATE_TEST_SUITE_P(Orders, RowTurns,
                         testing::Combine(testing::Values(SampleOrder::kAlphaFirst, SampleOrder::kAlphaLast),
                                          testing::Values(1, 4), testing::Values(100, std::size_t{1} << 30)));

TEST_P(RowTurns, WriteTheirPixelsAndNoOtherByteAtAnyAddress) {
    const auto [order, sampleBytes, pictureBytes] = GetParam();
    const std::size_t pixelBytes = 4 * sampleBytes;
    const std::size_t firstSample = order == SampleOrder::kAlphaFirst ? 3 : 1;
    const Bytes before = counted(1);
    const Bytes source = counted(90);
    for (std::size_t first = kMargin; first < kMargin + 17; ++first) {
        for (const std::size_t from : {0U, 1U, 4U, 16U}) {
            for (const std::size_t count : {0U, 1U, 2U, 3U, 4U, 5U, 16U, 17U}) {
                Bytes bytes = before;
                turnTo(order, sampleBytes, pictureBytes)(bytes.data() + first, source.data() + from, count);
                Bytes expected = before;
                for (std::size_t sample = 0; sample < 4 * count; ++sample) {
                    const std::size_t taken = sample / 4 * 4 + (sample % 4 + firstSample) % 4;
                    std::copy_n(source.data() + from + taken * sampleBytes, sampleBytes,
                                expected.data() + first + sample * sampleBytes);
                }
                ASSERT_TRUE(bytes == expected)
                    << count << " of " << pixelBytes << " bytes from " << from << " to " << first;
            }
        }
    }
}

} // namespace
} // namespace kovalune::test
