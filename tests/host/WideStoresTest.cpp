#include "host/WideStores.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kovalune::test {
using namespace host;
namespace {

using Bytes = std::vector<std::byte>;

constexpr std::size_t kMargin = 80;

/// All different from their neighbours.
Bytes counted(std::size_t count, unsigned first) {
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<std::byte>(first + i * 7 + i / 256);
    }
    return bytes;
}

/// A few bytes of a small whole and of one far larger than caches.
class WideStores : public testing::TestWithParam<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(Wholes, WideStores, testing::Values(100, std::size_t{1} << 30));

TEST_P(WideStores, ClearTheirBytesAndNoOther) {
    const Bytes before = counted(2 * kMargin + 400, 1);
    for (std::size_t first = kMargin; first < 2 * kMargin; ++first) {
        for (const std::size_t count : {0U, 1U, 15U, 16U, 63U, 64U, 65U, 127U, 128U, 200U, 319U, 320U}) {
            Bytes bytes = before;
            Bytes expected = before;
            clearFor(GetParam())(bytes.data() + first, count);
            std::fill_n(expected.data() + first, count, std::byte{0});
            ASSERT_TRUE(bytes == expected) << count << " from " << first;
        }
    }
}

TEST_P(WideStores, CopyTheirBytesAndNoOther) {
    const Bytes before = counted(2 * kMargin + 400, 1);
    const Bytes source = counted(2 * kMargin + 400, 90);
    for (std::size_t first = kMargin; first < 2 * kMargin; ++first) {
        for (const std::size_t from : {0U, 1U, 4U, 17U, 64U}) {
            for (const std::size_t count : {0U, 1U, 15U, 16U, 63U, 64U, 65U, 128U, 200U, 320U}) {
                Bytes bytes = before;
                Bytes expected = before;
                copyFor(GetParam())(bytes.data() + first, source.data() + from, count);
                std::copy_n(source.data() + from, count, expected.data() + first);
                ASSERT_TRUE(bytes == expected) << count << " from " << from << " to " << first;
            }
        }
    }
}

} // namespace
} // namespace kovalune::test
