#include "render/shots/FramePattern.h"

#include "text/Failure.h"

#include <gtest/gtest.h>

namespace kovalune::test {

using namespace shots;

namespace {

struct NameCase {
    const char* pattern;
    int64_t frame;
    const char* name; ///< nullptr: it is no pattern
};

TEST(FramePattern, NamesFilesAsPrintfDoes) {
    const NameCase known[] = {{"a.####.png", 7, "a.0007.png"},
                              {"a.####.png", -5, "a.-005.png"},
                              {"a.##.png", 12345, "a.12345.png"},
                              {"a.%d.png", 7, "a.7.png"},
                              {"a.%04d.png", -5, "a.-005.png"},
                              {"a.%012d.png", 3, "a.000000000003.png"},
                              {"a#.%03d.#b##.png", 4, "a#.004.#b##.png"},
                              {"50%%.##.png", 4, "50%.04.png"},
                              {"%%d.##.png", 4, "%d.04.png"},
                              {"%s.##.png", 4, "%s.04.png"},
                              {"####", 9, "0009"},
                              {"x##y/a.##.png", 1, "x##y/a.01.png"}};
    for (const NameCase& each : known) {
        const std::optional<FramePattern> pattern = FramePattern::of(each.pattern);
        ASSERT_TRUE(pattern) << each.pattern;
        EXPECT_EQ(pattern->nameOf(each.frame), each.name);
        EXPECT_EQ(pattern->frameOf(std::filesystem::path(each.name).filename().string()), each.frame)
            << each.name;
    }
}

TEST(FramePattern, IsNoneWithoutAField) {
    for (const char* name :
         {"a.png", "a#.png", "a%4d.png", "a%0d.png", "a%%d.png", "##/a.png", "a%x.png", "a%", "%00d"}) {
        EXPECT_FALSE(FramePattern::of(name)) << name;
    }
}

TEST(FramePattern, HasOneField) {
    for (const char* name : {"a.##.b.##.png", "%d.%04d.png"}) {
        EXPECT_THROW(static_cast<void>(FramePattern::of(name)), text::Failure) << name;
    }
}

TEST(FramePattern, KnowsOnlyTheNamesThatItWrites) {
    const FramePattern pattern("in/a.", 3, ".png");
    for (const char* name : {"a.07.png", "a.0007.png", "a.+07.png", "a.-07x.png", "a..png", "a.png",
                             "b.007.png", "a.007.PNG", "a.-00.png", "a.99999999999999999999.png"}) {
        EXPECT_FALSE(pattern.frameOf(name)) << name;
    }
    EXPECT_EQ(pattern.frameOf("a.1234.png"), 1234);
    EXPECT_EQ(pattern.folder(), "in");
    EXPECT_EQ(FramePattern("a.", 1, "").folder(), ".");
}

} // namespace
} // namespace kovalune::test
