// The plug-in in ffmpeg, from picture files to picture files, beside the command.

#include "tests/platform/ScopedVariable.h"
#include "tests/support/TestFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace kovalune::test {
namespace {

const std::string kSettings = "Blur Amount=0\nColor 1=#E63C46\n1 : Color=#B41E28\n1 : Boundary Blur=20\n";
constexpr int kFrames = 12;

std::string inShell(const std::filesystem::path& path) {
    return '\'' + path.string() + '\'';
}

bool succeeds(const std::string& command) {
    return std::system(command.c_str()) == 0;
}

std::string numbered(const std::string& start, int number) {
    return start + (number < 10 ? "000" : "00") + std::to_string(number) + ".png";
}

class Frei0rInFfmpeg : public testing::Test {
protected:
    void SetUp() override {
        if (!succeeds("command -v ffmpeg >/dev/null")) {
            const char* const ci = std::getenv("CI");
            ASSERT_FALSE(ci != nullptr && std::string(ci) == "true") << "there is no ffmpeg";
            GTEST_SKIP() << "there is no ffmpeg";
        }
        writeBytes(folder_ / "clip.params", {kSettings.begin(), kSettings.end()});
    }

    /// From the sample frames, or `input`, through a chain of filters to numbered files in the folder. Nothing may be told.
    void ffmpeg(const std::string& chain, const std::string& output,
                const std::string& input = std::string(KOVALUNE_EXAMPLES) + "/shot/cel.%04d.png") const {
        const std::string log = inShell(folder_ / "ffmpeg.log");
        ASSERT_TRUE(succeeds("cd " + inShell(folder_.path()) + " && ffmpeg -nostdin -v error -y -i '" +
                             input + "' -vf \"" + chain + "\" '" + output + "' >" + log + " 2>&1"))
            << logged();
        EXPECT_EQ(logged(), "");
    }

    void command(const std::string& words) const {
        ASSERT_TRUE(succeeds("cd " + inShell(folder_.path()) + " && '" KOVALUNE_COMMAND "' " + words +
                             " >command.log 2>&1"))
            << words;
    }

    /// As the command compares: every sample.
    bool same(const std::string& first, const std::string& second) const {
        return succeeds("cd " + inShell(folder_.path()) + " && '" KOVALUNE_COMMAND "' compare " + first +
                        ' ' + second + " >compare.log 2>&1");
    }

    std::string logged() const {
        const std::vector<uint8_t> bytes = bytesOf(folder_ / "ffmpeg.log");
        return {bytes.begin(), bytes.end()};
    }

    /// Of the sample frames with the settings of a file, as FOLDER/NNNN.png.
    void render(const std::string& params, const std::string& output) const {
        command("render '" KOVALUNE_EXAMPLES "/shot/cel.####.png' -o " + output +
                "'/####.png' --mkdir --quiet --depth 8 --params " + params);
    }

    const TestFolder folder_;
    const ScopedVariable path_{"FREI0R_PATH",
                               std::filesystem::path(KOVALUNE_FREI0R_FILE).parent_path().c_str()};
    const ScopedVariable locale_{"LC_ALL", "C"};
};

TEST_F(Frei0rInFfmpeg, MakesTheVeryPixelsOfTheCommand) {
    render("clip.params", "expected");
    std::filesystem::create_directory(folder_ / "found");
    ffmpeg("format=rgba,frei0r=kovalune:clip.params", "found/%04d.png");
    int changed = 0;
    for (int frame = 1; frame <= kFrames; ++frame) {
        EXPECT_TRUE(same(numbered("expected/", frame), numbered("found/", frame))) << frame;
        changed += same(numbered(KOVALUNE_EXAMPLES "/shot/cel.", frame), numbered("found/", frame)) ? 0 : 1;
    }
    EXPECT_EQ(changed, kFrames);
}

/// Numbers for the single parameters, the first field empty: no settings file.
TEST_F(Frei0rInFfmpeg, TakesSingleParametersByTheirPlace) {
    const std::string text =
        "View=Extract\nBlur Amount=4\nBlur Repeat Num=1\nKeep Division=off\nColor 1=#E63C46\n";
    writeBytes(folder_ / "single.params", {text.begin(), text.end()});
    render("single.params", "expected");
    std::filesystem::create_directory(folder_ / "found");
    ffmpeg("format=rgba,frei0r=kovalune:|Extract|0.004|0|n|y|#E63C46", "found/%04d.png");
    EXPECT_TRUE(same("expected/0003.png", "found/0003.png"));
    EXPECT_TRUE(same("expected/0012.png", "found/0012.png"));
}

/// Some versions hand rows over that are longer than they say, where the width is no multiple of 16: the chain of the documents
/// makes it one. No selected colour touches the right edge here.
TEST_F(Frei0rInFfmpeg, IsWholeAtAnyWidthThroughThePaddedChain) {
    for (const char* const size : {"324:57", "101:57"}) {
        ffmpeg("crop=" + std::string(size) + ":270:200,format=rgba", "in.png",
               KOVALUNE_EXAMPLES "/shot/cel.0006.png");
        command("render in.png -o expected.png --force --quiet --depth 8 --params clip.params");
        ffmpeg("format=rgba,pad=ceil(iw/16)*16:ih:0:0:color=black@0,frei0r=kovalune:clip.params,crop=" +
                   std::string(size) + ":0:0:exact=1",
               "found.png", (folder_ / "in.png").string());
        EXPECT_TRUE(same("expected.png", "found.png")) << size;
        EXPECT_FALSE(same("expected.png", "in.png")) << size;
    }
}

/// `filter_params` sent to a running filter: from the sixth frame on, which begins at 0.2 s.
TEST_F(Frei0rInFfmpeg, TakesParametersWhileItRuns) {
    const std::string other = kSettings + "View=Process 1\n";
    writeBytes(folder_ / "other.params", {other.begin(), other.end()});
    render("clip.params", "first");
    render("other.params", "second");
    std::filesystem::create_directory(folder_ / "found");
    ffmpeg("format=rgba,sendcmd=c='0.2 frei0r filter_params other.params',frei0r=kovalune:clip.params",
           "found/%04d.png");
    for (int frame = 1; frame <= kFrames; ++frame) {
        EXPECT_TRUE(same(numbered(frame < 6 ? "first/" : "second/", frame), numbered("found/", frame)))
            << frame;
    }
    EXPECT_FALSE(same("first/0006.png", "second/0006.png"));
}

/// It goes on, with a word, and the pictures are as they were.
TEST_F(Frei0rInFfmpeg, SaysWhatIsWrongWithASettingsFile) {
    const std::string log = inShell(folder_ / "ffmpeg.log");
    ASSERT_TRUE(succeeds("cd " + inShell(folder_.path()) +
                         " && ffmpeg -nostdin -v error -y -i '" KOVALUNE_EXAMPLES
                         "/shot/cel.0003.png' -vf format=rgba,frei0r=kovalune:none.params out.png >" +
                         log + " 2>&1"));
    EXPECT_EQ(logged(), "kovalune: cannot read the settings file 'none.params': No such file or directory\n");
    EXPECT_TRUE(same(KOVALUNE_EXAMPLES "/shot/cel.0003.png", "out.png"));
}

} // namespace
} // namespace kovalune::test
