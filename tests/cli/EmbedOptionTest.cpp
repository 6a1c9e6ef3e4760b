// --embed and params --from: the settings travel in the picture.

#include "tests/cli/ErrorCase.h"

namespace kovalune::test {
namespace {

class EmbedOption : public ErrorCase {
protected:
    CommandOutcome run(const std::vector<std::string>& words) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }
};

TEST_F(EmbedOption, GivesTheSettingsBackAsTheyWerePrinted) {
    for (const std::string output : {"a.png", "a.tif", "a.exr"}) {
        const CommandOutcome rendered = run({"render", "in.png", "-o", output, "--embed", "--print-params",
                                             "--set", "Blur Amount=12.5", "--set", "Color 1=#102030"});
        EXPECT_EQ(rendered.exitCode, 0) << rendered.err;
        const CommandOutcome told = run({"params", "--from", output});
        EXPECT_TRUE(told.ok()) << told.err;
        EXPECT_TRUE(told.out.starts_with("; Kovalune settings\n; effect version " KOVALUNE_VERSION " "))
            << told.out;
        EXPECT_TRUE(told.out.ends_with("\n" + rendered.out)) << told.out;
        writeBytes(folder_ / "again.params", {told.out.begin(), told.out.end()});
        EXPECT_EQ(run({"render", "--params", "again.params", "--print-params"}).out, rendered.out);
    }
}

TEST_F(EmbedOption, ChangesNoPixel) {
    EXPECT_EQ(run({"render", "in.png", "-o", "a.png", "--embed"}).exitCode, 0);
    EXPECT_EQ(run({"render", "in.png", "-o", "b.png"}).exitCode, 0);
    EXPECT_EQ(run({"compare", "a.png", "b.png"}).exitCode, 0);
    EXPECT_EQ(run({"render", "a.png", "-o", "c.png"}).exitCode, 0);
    EXPECT_EQ(run({"render", "a.png", "-o", "c.exr"}).err, "");
    EXPECT_EQ(run({"params", "--from", "c.png"}).exitCode, 3);
}

TEST_F(EmbedOption, IsRefusedWhereItHasNoPlace) {
    expectFailure({"render", "missing.png", "-o", "x.tga", "--embed"}, 2,
                  {"cannot write 'x.tga' with --embed: TGA files have no place for settings"});
    expectFailure({"params", "--from", "in.png"}, 3, {"cannot read 'in.png': it holds no settings"});
    expectFailure({"params", "--from", "missing.png"}, 3, {"missing.png"});
    expectFailure({"params", "--from", "in.png", "--json"}, 2, {"--from: prints what the picture holds"});
}

} // namespace
} // namespace kovalune::test
