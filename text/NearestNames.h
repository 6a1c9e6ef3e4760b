// Finds the names that someone may have meant by a mistyped one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kovalune::text {

/// The least number of letters to add, drop, replace or swap with their neighbour, without case. Counts bytes.
std::size_t editDistance(std::string_view a, std::string_view b);

/// At most `most` of `names`, the nearest first, equally near ones in their given order. Near is what about a
/// third of the letters away, or holds the wanted text; what is farther is left out.
std::vector<std::string> nearestNames(std::string_view wanted, const std::vector<std::string>& names,
                                      std::size_t most = 3);

} // namespace kovalune::text
