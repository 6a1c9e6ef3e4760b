#include "tests/windows/PiplProperties.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace kovalune::test {
namespace {

std::string textOf(std::span<const uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

template <std::size_t Size>
std::string literal(const char (&letters)[Size]) {
    return {letters, Size - 1};
}

} // namespace

std::vector<PiplProperty> readPipl(std::span<const uint8_t> bytes) {
    if (word16(bytes, 0) != 1 || word32(bytes, 2) != 0) {
        throw std::runtime_error("no property list of version 0");
    }
    std::vector<PiplProperty> list;
    std::size_t at = 10;
    for (uint32_t i = 0; i < word32(bytes, 6); ++i) {
        const uint32_t length = word32(bytes, at + 12);
        list.push_back({textOf(slice(bytes, at, 4)), textOf(slice(bytes, at + 4, 4)), word32(bytes, at + 8),
                        textOf(slice(bytes, at + 16, length))});
        at += 16 + std::size_t{length};
    }
    if (at != bytes.size()) {
        throw std::runtime_error("bytes behind the last property");
    }
    return list;
}

std::vector<PiplProperty> expectedProperties(bool is64Bit) {
    const auto property = [](const char* reversedKey, std::string data) {
        return PiplProperty{"MIB8", reversedKey, 0, std::move(data)};
    };
    return {
        property("dnik", "TKFe"),
        property("eman", literal("\x08Kovalune\0\0\0")),
        property("gtac", literal("\x05ORVEL\0\0")),
        property(is64Bit ? "4668" : "68xw", literal("EntryPointFunc\0\0")),
        property("RVPe", literal("\x02\0\0\0")),
        property("RVSe", is64Bit ? literal("\x0D\0\0\0") : literal("\x0C\0\x0E\0")),
        property("REVe", literal("\x08\x0E\x08\0")),
        property("FNIe", is64Bit ? literal("\0\0\0\0") : literal("\0\0")),
        property("OLGe", literal("\x70\0\0\x06")),
        property("2LGe", literal("\x19\x14\0\0")),
        property("ANMe", literal("\x0EORVEL KOVALUNE\0")),
        property("LFea", literal("\0\0\0\0")),
    };
}

void expectProperties(const std::vector<PiplProperty>& actual, const std::vector<PiplProperty>& expected) {
    EXPECT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < std::min(actual.size(), expected.size()); ++i) {
        SCOPED_TRACE("property " + std::to_string(i) + ", " + expected[i].key);
        EXPECT_EQ(actual[i].vendor, expected[i].vendor);
        EXPECT_EQ(actual[i].key, expected[i].key);
        EXPECT_EQ(actual[i].id, expected[i].id);
        EXPECT_EQ(actual[i].data, expected[i].data);
    }
}

} // namespace kovalune::test
