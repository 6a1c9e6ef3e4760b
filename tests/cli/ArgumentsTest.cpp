#include "cli/arguments/Arguments.h"
#include "host/Host.h"
#include "text/Failure.h"

#include <gtest/gtest.h>

namespace kovalune::test {

using namespace cli;
using namespace render;
using namespace text;

namespace {

Arguments parsed(const std::vector<const char*>& words) {
    std::vector<const char*> line = {"kovalune"};
    for (const char* word : words) {
        line.push_back(word);
    }
    return parseArguments(static_cast<int>(line.size()), line.data());
}

std::string failure(const std::vector<const char*>& words) {
    try {
        parsed(words);
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.kind(), FailureKind::kUsage);
        return failure.what();
    }
    return {};
}

TEST(Arguments, RenderTakesTwoFilesAndDefaults) {
    const auto render = std::get<RenderArguments>(parsed({"render", "in.png", "-o", "out.png"}));
    EXPECT_EQ(render.sequence.inputs.front(), "in.png");
    EXPECT_EQ(render.sequence.output, "out.png");
    EXPECT_TRUE(render.effect.settings.empty());
    EXPECT_FALSE(render.view);
    EXPECT_FALSE(render.effect.plugin);
    EXPECT_EQ(render.effect.threads, 0);
}

TEST(Arguments, SetTakesOneTextEachTimeAndKeepsTheOrder) {
    const auto render = std::get<RenderArguments>(
        parsed({"render", "--set", "A=1", "in.png", "--set=B=[1,2]", "--set", "C=", "--output=out.png"}));
    EXPECT_EQ(render.effect.settings, (std::vector<std::string>{"A=1", "B=[1,2]", "C="}));
    EXPECT_EQ(render.sequence.inputs.front(), "in.png");
}

TEST(Arguments, RenderTakesViewThreadsAndPlugin) {
    const auto render = std::get<RenderArguments>(
        parsed({"render", "in", "-o", "out", "--view", "Base", "--threads", "64", "--plugin", "x.so"}));
    EXPECT_EQ(render.view, "Base");
    EXPECT_EQ(render.effect.threads, 64);
    EXPECT_EQ(render.effect.plugin, "x.so");
}

TEST(Arguments, APictureMayHaveTheNameOfACommand) {
    EXPECT_EQ(std::get<RenderArguments>(parsed({"render", "params", "-o", "render"})).sequence.inputs.front(),
              "params");
}

TEST(Arguments, ANameMayStartWithADashBehindTwo) {
    EXPECT_EQ(
        std::get<RenderArguments>(parsed({"render", "-o", "out", "--", "-in.png"})).sequence.inputs.front(),
        "-in.png");
}

TEST(Arguments, ParamsTakesAPlugin) {
    EXPECT_FALSE(std::get<ParamsArguments>(parsed({"params"})).effect.plugin);
    EXPECT_EQ(std::get<ParamsArguments>(parsed({"params", "--plugin", "x.so"})).effect.plugin, "x.so");
}

TEST(Arguments, HelpOfEachCommandHasAnExample) {
    for (const std::vector<const char*>& words :
         {std::vector<const char*>{"--help"}, {"render", "--help"}, {"params", "--help"}}) {
        const std::string text = std::get<ShownText>(parsed(words)).text;
        EXPECT_NE(text.find("Example:\n  kovalune "), std::string::npos) << text;
    }
}

TEST(Arguments, WrongFormsAreNamed) {
    EXPECT_NE(failure({}).find("subcommand is required"), std::string::npos);
    EXPECT_NE(failure({"rendr", "x"}).find("'rendr'"), std::string::npos);
    EXPECT_NE(failure({"--bogus"}).find("'--bogus'"), std::string::npos);
    EXPECT_NE(failure({"render", "-o", "x"}).find("INPUT"), std::string::npos);
    EXPECT_NE(failure({"render", "x"}).find("--output"), std::string::npos);
    EXPECT_NE(failure({"render", "x", "-o"}).find("--output"), std::string::npos);
    EXPECT_NE(failure({"compare", "x", "y", "z"}).find("'z'"), std::string::npos);
    EXPECT_NE(failure({"render", "x", "-o", "y", "--bogus"}).find("--bogus"), std::string::npos);
    EXPECT_NE(failure({"render", "x", "-o", "y", "-o", "z"}).find("--output"), std::string::npos);
    EXPECT_NE(failure({"params", "x"}).find("'x'"), std::string::npos);
}

TEST(Arguments, MistypedNamesAreAnsweredWithTheNearest) {
    EXPECT_NE(failure({"rendr", "x"}).find("did you mean 'render'?"), std::string::npos);
    EXPECT_NE(failure({"--vresion"}).find("did you mean '--version'?"), std::string::npos);
    EXPECT_NE(failure({"render", "x", "-o", "y", "--thread=3"}).find("did you mean '--threads'?"),
              std::string::npos);
    EXPECT_EQ(failure({"render", "x", "-o", "y", "--zzzzzzzzz"}).find("did you mean"), std::string::npos);
}

TEST(Arguments, TheBeginningOfAnOptionMeansIt) {
    EXPECT_NE(failure({"render", "x", "--out", "y"}).find("did you mean '--output'?"), std::string::npos);
    EXPECT_NE(failure({"render", "x", "--thr=3"}).find("did you mean '--threads'?"), std::string::npos);
}

TEST(Arguments, HelpShowsTheHelpOfACommand) {
    const auto shownBy = [](const std::vector<const char*>& words) {
        return std::get<ShownText>(parsed(words)).text;
    };
    EXPECT_EQ(shownBy({"help"}), shownBy({"--help"}));
    for (const char* command : {"render", "defaults", "info", "help"}) {
        EXPECT_EQ(shownBy({"help", command}), shownBy({command, "--help"})) << command;
    }
}

TEST(Arguments, ThreadsGoFromOneToSixtyFour) {
    for (const char* wrong : {"0", "65", "-1", "many", "1.5", "99999999999999999999", ""}) {
        const std::string text = failure({"render", "x", "-o", "y", "--threads", wrong});
        EXPECT_NE(text.find("--threads"), std::string::npos) << wrong << ": " << text;
    }
}

TEST(Arguments, PngLevelsGoFromZeroToNine) {
    EXPECT_EQ(std::get<RenderArguments>(parsed({"render", "x", "-o", "y"})).frame.form.encoding.pngLevel, 3);
    EXPECT_EQ(std::get<SheetArguments>(parsed({"sheet", "x", "-o", "y", "--png-level", "0"}))
                  .frame.form.encoding.pngLevel,
              0);
    EXPECT_EQ(
        std::get<SmoothArguments>(parsed({"smooth", "x", "-o", "y", "--png-level=9"})).form.encoding.pngLevel,
        9);
    EXPECT_EQ(std::get<ColorsArguments>(parsed({"colors", "x", "--png-level", "6"})).encoding.pngLevel, 6);
    EXPECT_EQ(std::get<CompareArguments>(parsed({"compare", "x", "y", "--png-level", "1"})).encoding.pngLevel,
              1);
    for (const char* wrong : {"10", "-1", "high", "3.5", "0x3", "99999999999999999999", ""}) {
        const std::string text = failure({"render", "x", "-o", "y", "--png-level", wrong});
        EXPECT_NE(text.find("--png-level takes a whole number, 0 to 9, not '" + std::string(wrong) + "'"),
                  std::string::npos)
            << wrong << ": " << text;
    }
}

TEST(Arguments, ThreadsGoAsFarAsTheHostTakesThem) {
    host::HostOptions options;
    options.threads = kMostThreads;
    EXPECT_NO_THROW(host::Host{options});
    options.threads = kMostThreads + 1;
    EXPECT_THROW(host::Host{options}, host::HostError);
}

TEST(Arguments, MessagesHaveOneLine) {
    EXPECT_EQ(failure({"render", "x", "-o", "y", "a\nb"}).find('\n'), std::string::npos);
}

} // namespace
} // namespace kovalune::test
