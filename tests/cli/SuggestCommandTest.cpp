// `kovalune suggest`: what it proposes for the drawings of the examples, and that it writes nothing where it has nothing.

#include "tests/cli/ErrorCase.h"

#include <algorithm>

namespace kovalune::test {
namespace {

class SuggestCommand : public ErrorCase {
protected:
    CommandOutcome run(const std::vector<std::string>& words) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }

    std::string textOf(const std::string& name) const {
        const std::vector<uint8_t> bytes = bytesOf(folder_ / name);
        return {bytes.begin(), bytes.end()};
    }

    /// A light of 40 by 40 pixels with a shadow of 30 by 20 at its side.
    void writeShaded(const std::string& name, int depth = 8) {
        PngPicture png = blankPng(PngColor::kRgb, depth, 70, 40);
        for (uint32_t y = 0; y < 40; ++y) {
            for (uint32_t x = 0; x < 70; ++x) {
                const std::array<uint8_t, 3> rgb = x < 40   ? std::array<uint8_t, 3>{200, 100, 100}
                                                   : y < 20 ? std::array<uint8_t, 3>{160, 60, 60}
                                                            : std::array<uint8_t, 3>{20, 20, 220};
                for (std::size_t i = 0; i < 3; ++i) {
                    const std::size_t sample = (std::size_t{y} * 70 + x) * 3 + i;
                    const std::size_t bytes = depth == 8 ? 1 : 2;
                    for (std::size_t byte = 0; byte < bytes; ++byte) {
                        png.rows[sample * bytes + byte] = rgb[i];
                    }
                }
            }
        }
        writePng(folder_ / name, png);
    }
};

TEST_F(SuggestCommand, ProposesSixPairsForEachExample) {
    for (const std::string drawing : {"cel1", "cel3"}) {
        const CommandOutcome outcome =
            run({"suggest", KOVALUNE_EXAMPLES "/" + drawing + ".png", "-o", drawing + ".params"});
        ASSERT_TRUE(outcome.ok()) << outcome.err;
        EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 6) << outcome.out;
        const std::string text = textOf(drawing + ".params");
        EXPECT_EQ(text.rfind("[Version=2.0]\n", 0), 0U);
    }
    const std::string text = textOf("cel1.params");
    for (const char* const line :
         {"; shadow of #3264B4:", "\n1 : Color=#1E4682\n", "; shadow of #FFD9BE:", " : Color=#E8A98C\n",
          "; shadow of #787864:", " : Color=#505046\n", "; highlight on #5A3C8C:", " : Color=#8C6EC8\n"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line;
    }
}

TEST_F(SuggestCommand, WritesSettingsThatRenderTakes) {
    for (const int depth : {8, 16}) {
        writeShaded("shaded.png", depth);
        const CommandOutcome outcome = run({"suggest", "shaded.png", "-o", "shaded.params"});
        ASSERT_TRUE(outcome.ok()) << outcome.err;
        EXPECT_EQ(outcome.out, "#A03C3C  shadow of     #C86464  Process 1, Boundary Blur 6\n");
        const CommandOutcome render =
            run({"render", "shaded.png", "-o", "soft.png", "--params", "shaded.params", "--strict"});
        EXPECT_TRUE(render.ok()) << render.err;
        EXPECT_EQ(run({"compare", "shaded.png", "soft.png"}).exitCode, 1);
    }
}

TEST_F(SuggestCommand, EndsWithCode1WhereThereIsNoPair) {
    PngPicture flat = blankPng(PngColor::kRgb, 8, 40, 40);
    writePng(folder_ / "flat.png", flat);
    expectFailure({"suggest", "flat.png", "-o", "flat.params"}, 1, {"'flat.png'", "nothing is written"});
    EXPECT_FALSE(std::filesystem::exists(folder_ / "flat.params"));
    expectFailure({"suggest", "flat.png", "-o", "old.txt"}, 1, {"'flat.png'"});
}

TEST_F(SuggestCommand, RefusesBeforeItReads) {
    expectFailure({"suggest", "in.png"}, 2, {"--output"});
    expectFailure({"suggest", "-o", "new.params"}, 2, {"INPUT"});
    expectFailure({"suggest", "missing.png", "-o", "old.png"}, 2, {"'old.png'", "settings"});
    expectFailure({"suggest", "missing.png", "-o", "missing.png"}, 2, {"'missing.png'"});
    expectFailure({"suggest", "in.png", "-o", "-"}, 2, {"not to the standard output"});
    expectFailure({"suggest", "missing.png", "-o", "none/new.params"}, 3, {"none/new.params"});
    expectFailure({"suggest", "missing.png", "-o", "new.params"}, 3, {"missing.png"});
    expectFailure({"suggest", "old.png", "-o", "new.params"}, 3, {"old.png"});
    expectFailure({"suggest", "in.png", "-o", "new.params", "--alpha", "no"}, 2, {"--alpha"});
}

TEST_F(SuggestCommand, ReplacesNoProtectedFileUnasked) {
    writeShaded("shaded.png");
    writeBytes(folder_ / "kept.params", {'k'});
    std::filesystem::permissions(folder_ / "kept.params", std::filesystem::perms::owner_read);
    expectFailure({"suggest", "shaded.png", "-o", "kept.params"}, 3, {"'kept.params'", "--force"});
    EXPECT_EQ(textOf("kept.params"), "k");
    EXPECT_TRUE(run({"suggest", "shaded.png", "-o", "kept.params", "--force"}).ok());
    EXPECT_NE(textOf("kept.params"), "k");
}

} // namespace
} // namespace kovalune::test
