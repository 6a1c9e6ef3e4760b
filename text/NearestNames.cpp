#include "text/NearestNames.h"

#include "text/AsciiText.h"

#include <algorithm>
#include <utility>

namespace kovalune::text {

std::size_t editDistance(std::string_view first, std::string_view second) {
    const std::string a = foldedCase(first);
    const std::string b = foldedCase(second);
    // Rows of the table of distances between the beginnings of the two texts.
    std::vector<std::size_t> beforeLast(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::swap(beforeLast, last);
        std::swap(last, row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
    }
    return row[b.size()];
}

std::vector<std::string> nearestNames(std::string_view wanted, const std::vector<std::string>& names,
                                      std::size_t most) {
    const std::string folded = foldedCase(wanted);
    std::vector<std::pair<std::size_t, std::string>> near;
    for (const std::string& name : names) {
        const std::size_t distance = editDistance(folded, name);
        const std::size_t reach = std::max<std::size_t>(2, std::max(folded.size(), name.size()) / 3);
        const bool holds = !folded.empty() && foldedCase(name).find(folded) != std::string::npos;
        if (distance <= reach || holds) {
            near.emplace_back(distance, name);
        }
    }
    std::stable_sort(near.begin(), near.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> result;
    for (std::size_t i = 0; i < near.size() && i < most; ++i) {
        result.push_back(near[i].second);
    }
    return result;
}

} // namespace kovalune::text
