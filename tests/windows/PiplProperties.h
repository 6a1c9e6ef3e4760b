// A property list taken apart, and what this effect's must hold.
#pragma once

#include "tests/windows/PeFile.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kovalune::test {

struct PiplProperty {
    std::string vendor; ///< as it stands in the file, backwards
    std::string key;    ///< likewise
    uint32_t id = 0;
    std::string data;

    friend bool operator==(const PiplProperty&, const PiplProperty&) = default;
};

/// Takes the list apart; std::runtime_error unless it is one of version 0 that ends with its last property.
std::vector<PiplProperty> readPipl(std::span<const uint8_t> bytes);

std::vector<PiplProperty> expectedProperties(bool is64Bit);

/// A failure for every difference.
void expectProperties(const std::vector<PiplProperty>& actual, const std::vector<PiplProperty>& expected);

} // namespace kovalune::test
