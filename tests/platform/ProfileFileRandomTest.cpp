// Random edits of profile texts, checked against a map of what they should hold.
#include "effect/platform/ProfileFile.h"

#include <array>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <utility>

namespace kovalune::test {
using namespace platform;
namespace {

using Names = std::pair<std::string, std::string>; // section, key

constexpr std::array<std::string_view, 4> kSections = {"alpha", "Beta", "g a", "\xE3\x81\x82"};
constexpr std::array<std::string_view, 5> kKeys = {"a", "bb", "C c", "]d", "\x82\xA0"};

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}

    std::size_t below(std::size_t limit) { return engine_() % limit; }

    std::string text(std::string_view alphabet, std::size_t length) {
        std::string result;
        for (std::size_t i = 0; i < length; ++i) {
            result += alphabet[below(alphabet.size())];
        }
        return result;
    }

private:
    std::mt19937 engine_;
};

// Without blanks at its ends, which are not kept.
std::string randomValue(Random& random) {
    const std::string inner = random.text("ab 1;=[]'\"\t\x82\xA0", random.below(8));
    return inner.empty() ? inner : "<" + inner + ">";
}

TEST(ProfileFileRandom, HoldsWhatWasSetAndNothingElse) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        Random random(seed);
        std::string text = seed % 2 == 0 ? "" : "\xEF\xBB\xBF; first\n\n[other]\nkept = yes\n; last";
        std::map<Names, std::string> expected;
        for (int step = 0; step < 60; ++step) {
            const std::string section(kSections.at(random.below(kSections.size())));
            const std::string key(kKeys.at(random.below(kKeys.size())));
            const std::size_t action = random.below(10);
            if (action == 0) {
                text = withoutProfileSection(text, section);
                std::erase_if(expected, [&](const auto& entry) { return entry.first.first == section; });
            } else if (action < 3) {
                text = withoutProfileKey(text, section, key);
                expected.erase({section, key});
            } else {
                const std::string value = randomValue(random);
                text = withProfileValue(text, section, key, value).value();
                expected[{section, key}] = value;
            }
            for (const std::string_view s : kSections) {
                for (const std::string_view k : kKeys) {
                    const auto entry = expected.find({std::string(s), std::string(k)});
                    const auto found = findProfileValue(text, s, k);
                    ASSERT_EQ(found.has_value(), entry != expected.end()) << seed << ' ' << step;
                    if (found) {
                        ASSERT_EQ(*found, entry->second) << seed << ' ' << step;
                    }
                }
            }
        }
        if (seed % 2 == 1) {
            EXPECT_EQ(findProfileValue(text, "other", "kept"), "yes");
            EXPECT_EQ(text.rfind("\xEF\xBB\xBF; first\n\n[other]\nkept = yes\n; last", 0), 0U);
        }
    }
}

TEST(ProfileFileRandom, KeepsEveryOtherByteOfAnyText) {
    using namespace std::string_view_literals;
    for (unsigned seed = 0; seed < 4000; ++seed) {
        Random random(seed);
        const std::string text = random.text("[[]]==;;sk \t\r\n\n\n\0\xEF\xBB\xBF\"1"sv, random.below(80));
        const auto before = findProfileValue(text, "s", "k");
        const std::string after = withProfileValue(text, "s", "k", "new").value();
        ASSERT_EQ(findProfileValue(after, "s", "k"), "new") << seed;

        std::size_t head = 0;
        while (head < text.size() && head < after.size() && text[head] == after[head]) {
            ++head;
        }
        std::size_t tail = 0;
        while (tail < text.size() - head && tail < after.size() - head &&
               text[text.size() - 1 - tail] == after[after.size() - 1 - tail]) {
            ++tail;
        }
        const std::string_view gone = std::string_view(text).substr(head, text.size() - head - tail);
        if (before) {
            // Only the value and the blanks after it may go.
            ASSERT_LE(gone.find_last_not_of(" \t\r") + 1, before->size()) << seed;
            ASSERT_EQ(gone.find('\n'), std::string_view::npos) << seed;
        } else {
            ASSERT_EQ(gone, "") << seed;
        }

        const std::string deleted = withoutProfileKey(after, "s", "k");
        ASSERT_EQ(findProfileValue(deleted, "s", "k"), std::nullopt) << seed;
        ASSERT_EQ(findProfileValue(withoutProfileSection(text, "s"), "s", "k"), std::nullopt) << seed;
    }
}

} // namespace
} // namespace kovalune::test
