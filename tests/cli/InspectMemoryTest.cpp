// The commands that only look at pictures, where a picture does not fit in memory.

#include "tests/cli/ErrorCase.h"

namespace kovalune::test {
namespace {

using InspectMemory = ErrorCase;

TEST_F(InspectMemory, OfAPictureThatDoesNotFitIsAFileError) {
    writePng(folder_ / "large.png", blankPng(PngColor::kRgbAlpha, 16, 4000, 4000));
    CommandSetting setting;
    setting.mostMemoryBytes = std::size_t{110} << 20;
    for (const std::vector<std::string>& words : {std::vector<std::string>{"colors", "large.png"},
                                                  {"colors", "large.png", "--where"},
                                                  {"suggest", "large.png", "-o", "new.params"},
                                                  {"pick", "large.png", "0,0"},
                                                  {"compare", "in.png", "large.png"},
                                                  {"compare", "large.png", "in.png", "--diff", "old.png"}}) {
        expectFailure(words, 3, {"'large.png'", "memory"}, setting);
    }
}

} // namespace
} // namespace kovalune::test
