// The file that the command writes: where it goes, what it replaces, what stays as it was.

#include "tests/cli/CommandProcess.h"
#include "tests/pictures/PngMaker.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/stat.h>

namespace kovalune::test {
namespace {

class OutputFile : public testing::Test {
protected:
    OutputFile() { writePng(folder_ / "in.png", picture_); }

    void render(const std::string& input, const std::string& output) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        const CommandOutcome outcome =
            runCommand({"render", input, "-o", output, "--set", "Enable 1=off"}, setting);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
    }

    bool holdsThePicture(const std::string& name) const {
        return readPngFile(folder_ / name).rows == picture_.rows;
    }

    const PngPicture picture_ = randomPng(PngColor::kRgbAlpha, 8, 9, 7, 1);
    TestFolder folder_;
};

TEST_F(OutputFile, MayBeTheInput) {
    PngPicture interlaced = picture_;
    interlaced.interlaced = true;
    writePng(folder_ / "in.png", interlaced);
    render("in.png", "in.png");
    EXPECT_TRUE(holdsThePicture("in.png"));
    EXPECT_FALSE(readPngFile(folder_ / "in.png").interlaced);
    EXPECT_EQ(folder_.names(), (std::vector<std::string>{"in.png"}));
}

TEST_F(OutputFile, OfEveryCommandIsPackedAsTheLevelSays) {
    PngPicture flat = randomPng(PngColor::kRgb, 8, 64, 48, 2);
    std::fill(flat.rows.begin(), flat.rows.end(), uint8_t{200});
    writePng(folder_ / "large.png", flat);
    std::fill(flat.rows.begin() + 999, flat.rows.begin() + 1999, uint8_t{20});
    writePng(folder_ / "other.png", flat);
    CommandSetting setting;
    setting.folder = folder_.path();
    const std::vector<std::vector<std::string>> commands = {
        {"render", "large.png", "-o", "out.png", "--set", "Enable 1=off"},
        {"sheet", "large.png", "-o", "out.png", "--set", "Enable 1=off"},
        {"smooth", "large.png", "-o", "out.png"},
        {"smooth", "large.png", "-o", "other.tga", "--flag-map", "out.png"},
        {"colors", "large.png", "-o", "out.png"},
        {"compare", "large.png", "other.png", "--diff", "out.png"}};
    for (const std::vector<std::string>& command : commands) {
        const auto written = [&](const char* level) {
            std::vector<std::string> words = command;
            words.insert(words.end(), {"--png-level", level});
            const CommandOutcome outcome = runCommand(words, setting);
            EXPECT_EQ(outcome.exitCode, command[0] == "compare" ? 1 : 0) << outcome.err;
            return bytesOf(folder_ / "out.png");
        };
        const std::vector<uint8_t> plain = written("0");
        const PngPicture plainPicture = readPngFile(folder_ / "out.png");
        EXPECT_LT(written("9").size(), plain.size()) << command[0];
        EXPECT_TRUE(readPngFile(folder_ / "out.png").rows == plainPicture.rows) << command[0];
    }
}

TEST_F(OutputFile, ReplacesAnOlderOneAndKeepsItsPermissions) {
    writeBytes(folder_ / "out.png", {1, 2, 3});
    ASSERT_EQ(chmod((folder_ / "out.png").c_str(), 0604), 0);
    render("in.png", "out.png");
    EXPECT_TRUE(holdsThePicture("out.png"));
    struct stat status {};
    ASSERT_EQ(stat((folder_ / "out.png").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0604U);
}

TEST_F(OutputFile, ThatIsWriteProtectedIsReplacedByForceAlone) {
    const std::string reason = "it is write-protected; --force replaces it all the same\n";
    CommandSetting setting;
    setting.folder = folder_.path();
    for (std::vector<std::string> words : {std::vector<std::string>{"render", "in.png", "-o", "out.png"},
                                           {"sheet", "in.png", "-o", "out.png"},
                                           {"smooth", "in.png", "-o", "out.png"},
                                           {"smooth", "in.png", "-o", "other.png", "--flag-map", "out.png"},
                                           {"colors", "in.png", "-o", "out.png"},
                                           {"compare", "in.png", "in.png", "--diff", "out.png"}}) {
        std::filesystem::remove(folder_ / "out.png");
        std::filesystem::remove(folder_ / "other.png");
        writeBytes(folder_ / "out.png", {1, 2, 3});
        ASSERT_EQ(chmod((folder_ / "out.png").c_str(), 0444), 0);
        CommandOutcome outcome = runCommand(words, setting);
        EXPECT_EQ(outcome.exitCode, 3) << words.front();
        EXPECT_EQ(outcome.err, "kovalune: cannot write 'out.png': " + reason);
        EXPECT_EQ(bytesOf(folder_ / "out.png"), (std::vector<uint8_t>{1, 2, 3}));
        EXPECT_FALSE(std::filesystem::exists(folder_ / "other.png"));
        words.emplace_back("--force");
        outcome = runCommand(words, setting);
        EXPECT_TRUE(outcome.ok()) << words.front() << outcome.err;
        EXPECT_GT(readPngFile(folder_ / "out.png").width, 0U);
        struct stat status {};
        ASSERT_EQ(stat((folder_ / "out.png").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0444U);
    }
}

TEST_F(OutputFile, IsReadableAsTheUsersMaskSays) {
    const mode_t old = umask(027);
    render("in.png", "out.png");
    umask(old);
    struct stat status {};
    ASSERT_EQ(stat((folder_ / "out.png").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(OutputFile, BehindALinkIsReplacedAndTheLinkStays) {
    std::filesystem::create_directory(folder_ / "other");
    writeBytes(folder_ / "other" / "real.png", {1, 2, 3});
    std::filesystem::create_symlink("other/real.png", folder_ / "link.png");
    render("in.png", "link.png");
    EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "link.png"));
    EXPECT_TRUE(holdsThePicture("other/real.png"));
}

TEST_F(OutputFile, BehindADanglingLinkIsMadeAndTheLinkStays) {
    std::filesystem::create_directory(folder_ / "other");
    std::filesystem::create_directory(folder_ / "links");
    std::filesystem::create_symlink("../other/next.png", folder_ / "links" / "first.png");
    std::filesystem::create_symlink(folder_ / "other" / "real.png", folder_ / "other" / "next.png");
    render("in.png", "links/first.png");
    EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "links" / "first.png"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "other" / "next.png"));
    EXPECT_FALSE(std::filesystem::is_symlink(folder_ / "other" / "real.png"));
    EXPECT_TRUE(holdsThePicture("other/real.png"));
}

TEST_F(OutputFile, NamesMayHaveBlanksAndJapaneseLetters) {
    const std::string folder = "新しい フォルダ";
    std::filesystem::create_directory(folder_ / folder);
    const std::string input = folder + "/絵 1.png";
    const std::string output = folder + "/ぼかし 後.PNG";
    writePng(folder_ / input, picture_);
    render(input, output);
    EXPECT_TRUE(holdsThePicture(output));
}

TEST_F(OutputFile, MayHaveTheLongestNameThereIs) {
    std::string name(251, 'n');
    name += ".png";
    render("in.png", name);
    EXPECT_TRUE(holdsThePicture(name));
}

} // namespace
} // namespace kovalune::test
