#include "tests/cli/ErrorCase.h"
#include "text/MessageText.h"

#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace kovalune::test {

using namespace text;

namespace {

using FileError = ErrorCase;

void putNumber(std::vector<uint8_t>& bytes, std::size_t place, uint32_t number) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[place + i] = static_cast<uint8_t>(number >> (24 - 8 * i));
    }
}

/// A sound file but for its size, which stands in the first chunk, with a check sum that fits.
std::vector<uint8_t> withSize(std::vector<uint8_t> bytes, uint32_t width, uint32_t height) {
    constexpr std::size_t kName = 12;
    constexpr std::size_t kSum = 29;
    putNumber(bytes, kName + 4, width);
    putNumber(bytes, kName + 8, height);
    putNumber(bytes, kSum, static_cast<uint32_t>(crc32(0, bytes.data() + kName, kSum - kName)));
    return bytes;
}

TEST_F(FileError, OfAnInputThatIsNotThere) {
    expectFailure({"render", "missing.png", "-o", "old.png"}, 3, {"'missing.png'", "No such file"});
    expectFailure({"render", "", "-o", "old.png"}, 2, {"INPUT"});
    expectFailure({"render", "in.png/x.png", "-o", "old.png"}, 3, {"'in.png/x.png'"});
}

TEST_F(FileError, OfAPictureOfMorePixelsThanAreAllowed) {
    writePng(folder_ / "large.png", blankPng(PngColor::kGrey, 8, 20, 10));
    const std::vector<std::string> limit = {
        "'large.png': it is 20 x 10 pixels, 200 in all, and --max-pixels, 1 to "
        "900000000, allows 199"};
    const auto refused = [&](std::vector<std::string> words) {
        words.insert(words.end(), {"--max-pixels", "199"});
        expectFailure(words, 3, limit);
        words.back() = "200";
        CommandSetting setting;
        setting.folder = folder_.path();
        EXPECT_NE(runCommand(words, setting).exitCode, 3) << words.front();
    };
    for (const char* const command : {"render", "smooth", "sheet"}) {
        refused({command, "large.png", "-o", "new.png"});
        std::filesystem::remove(folder_ / "new.png");
    }
    refused({"colors", "large.png"});
    refused({"suggest", "large.png", "-o", "new.params"});
    refused({"pick", "large.png", "0,0"});
    refused({"compare", "large.png", "large.png"});
}

TEST_F(FileError, OfAMaskOfMorePixelsThanAreAllowed) {
    writePng(folder_ / "small.png", blankPng(PngColor::kGrey, 8, 20, 9));
    writePng(folder_ / "large.png", blankPng(PngColor::kGrey, 8, 20, 10));
    expectFailure({"render", "small.png", "-o", "new.png", "--mask", "large.png", "--max-pixels", "199"}, 3,
                  {"'large.png': it is 20 x 10 pixels, 200 in all"});
    expectFailure({"params", "--from", "large.png", "--max-pixels", "199"}, 3, {"'large.png'", "200 in all"});
}

TEST_F(FileError, OfAnInputThatIsNoPng) {
    expectFailure({"render", "old.png", "-o", "new.png"}, 3, {"'old.png'", "not a PNG"});
    writeBytes(folder_ / "empty.png", {});
    expectFailure({"render", "empty.png", "-o", "new.png"}, 3, {"'empty.png'", "empty"});
    expectFailure({"render", ".", "-o", "new.png"}, 2, {"'.'", "more than one sequence"});
    expectFailure({"render", "/dev/zero", "-o", "new.png"}, 3, {"'/dev/zero'", "not a picture"});
}

TEST_F(FileError, OfAnInputWhoseReadingFails) {
    expectFailure({"render", "/proc/self/mem", "-o", "old.png"}, 3, {"'/proc/self/mem'", "error"});
}

TEST_F(FileError, OfAFolderThatTakesNoFiles) {
    expectFailure({"render", "in.png", "-o", "/proc/new.png"}, 3, {"cannot write '/proc/new.png'"});
}

TEST_F(FileError, OfAnInputThatMayNotBeRead) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may read everything";
    }
    writePng(folder_ / "locked.png", randomPng(PngColor::kRgb, 8, 2, 2, 1));
    chmod((folder_ / "locked.png").c_str(), 0);
    expectFailure({"render", "locked.png", "-o", "old.png"}, 3, {"'locked.png'"});
}

TEST_F(FileError, OfADamagedInput) {
    std::vector<uint8_t> bytes = bytesOf(folder_ / "in.png");
    bytes[bytes.size() - 20] ^= 0x10;
    writeBytes(folder_ / "in.png", bytes);
    expectFailure({"render", "in.png", "-o", "old.png"}, 3, {"'in.png'", "damaged"});
}

TEST_F(FileError, OfAPictureThatIsTooLarge) {
    for (const bool wide : {true, false}) {
        const PngPicture large = blankPng(PngColor::kGrey, 1, wide ? 30001 : 1, wide ? 1 : 30001);
        writePng(folder_ / "large.png", large);
        expectFailure({"render", "large.png", "-o", "old.png"}, 3,
                      {"'large.png'", wide ? "30001 x 1 " : "1 x 30001 ", "30000"});
    }
    const std::vector<uint8_t> sound = bytesOf(folder_ / "in.png");
    writeBytes(folder_ / "large.png", withSize(sound, 0x7fffffff, 0x7fffffff));
    expectFailure({"render", "large.png", "-o", "old.png"}, 3, {"'large.png'", "2147483647 x 2147483647 "});
}

TEST_F(FileError, OfAPictureWithASideThatCannotBe) {
    const std::vector<uint8_t> sound = bytesOf(folder_ / "in.png");
    for (const uint32_t side : {0U, 0x80000000U, 0xffffffffU}) {
        writeBytes(folder_ / "odd.png", withSize(sound, side, 5));
        expectFailure({"render", "odd.png", "-o", "old.png"}, 3, {"'odd.png'", "damaged"});
        writeBytes(folder_ / "odd.png", withSize(sound, 5, side));
        expectFailure({"render", "odd.png", "-o", "old.png"}, 3, {"'odd.png'", "damaged"});
    }
}

TEST_F(FileError, OfAPictureThatItsFileCannotHold) {
    const std::vector<uint8_t> sound = bytesOf(folder_ / "in.png");
    writeBytes(folder_ / "short.png", withSize(sound, 30000, 30000));
    expectFailure({"render", "short.png", "-o", "old.png"}, 3,
                  {"'short.png'", "cut short: 30000 x 30000 pixels need more bytes"});
}

TEST_F(FileError, OfAPictureWithTooFewRows) {
    const std::vector<uint8_t> sound = bytesOf(folder_ / "in.png");
    writeBytes(folder_ / "short.png", withSize(sound, 12, 10));
    expectFailure({"render", "short.png", "-o", "old.png"}, 3, {"'short.png'"});
}

TEST_F(FileError, OfOutputNamesThatCannotBe) {
    expectFailure({"render", "in.png", "-o", "new.jpg"}, 3, {"'new.jpg'", ".png"});
    expectFailure({"render", "in.png", "-o", "new"}, 3, {"'new'", ".png"});
    expectFailure({"render", "in.png", "-o", ""}, 2, {"--output"});
    expectFailure({"render", "in.png", "-o", "missing/new.png"}, 3, {"'missing/new.png'", "folder"});
    expectFailure({"render", "in.png", "-o", "in.png/new.png"}, 3, {"'in.png/new.png'"});
    std::filesystem::create_directory(folder_ / "folder.png");
    expectFailure({"render", "in.png", "-o", "folder.png"}, 3, {"'folder.png'", "folder"});
    ASSERT_EQ(mkfifo((folder_ / "pipe.png").c_str(), 0600), 0);
    std::filesystem::create_symlink("pipe.png", folder_ / "link.png");
    for (const char* pipe : {"pipe.png", "link.png"}) {
        expectFailure({"render", "in.png", "-o", pipe}, 3, {inQuotes(pipe), "ordinary file"});
        EXPECT_TRUE(std::filesystem::is_fifo(folder_ / pipe));
    }
    std::filesystem::create_symlink("missing/new.png", folder_ / "nowhere.png");
    expectFailure({"render", "in.png", "-o", "nowhere.png"}, 3, {"'nowhere.png'", "folder 'missing'"});
    std::filesystem::create_symlink("round.png", folder_ / "round.png");
    expectFailure({"render", "in.png", "-o", "round.png"}, 3, {"'round.png'", "symbolic links"});
    for (const char* link : {"nowhere.png", "round.png"}) {
        EXPECT_TRUE(std::filesystem::is_symlink(folder_ / link));
    }
    std::string longName(300, 'x');
    longName += ".png";
    expectFailure({"render", "in.png", "-o", longName}, 3, {"xxx.png'"});
}

TEST_F(FileError, OfAFolderThatMayNotBeWrittenTo) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may write everywhere";
    }
    std::filesystem::create_directory(folder_ / "locked");
    chmod((folder_ / "locked").c_str(), 0500);
    expectFailure({"render", "in.png", "-o", "locked/new.png"}, 3, {"'locked/new.png'"});
    chmod((folder_ / "locked").c_str(), 0700);
}

TEST_F(FileError, OfADiskThatIsFullLeavesNothingBehind) {
    writePng(folder_ / "in.png", randomPng(PngColor::kRgbAlpha, 16, 64, 64, 1));
    CommandSetting setting;
    setting.mostFileBytes = 10000;
    for (const char* output : {"old.png", "new.png"}) {
        expectFailure({"render", "in.png", "-o", output}, 3, {output, "File too large"}, setting);
    }
    const std::vector<uint8_t> before = bytesOf(folder_ / "in.png");
    expectFailure({"render", "in.png", "-o", "in.png"}, 3, {"'in.png'"}, setting);
    EXPECT_EQ(bytesOf(folder_ / "in.png"), before);
}

#ifndef KOVALUNE_SANITIZED // the sanitizers need their address space for themselves
TEST_F(FileError, OfAPictureThatDoesNotFitInMemory) {
    writePng(folder_ / "in.png", blankPng(PngColor::kRgbAlpha, 16, 3000, 3000));
    CommandSetting setting;
    setting.mostMemoryBytes = std::size_t{110} << 20;
    expectFailure({"render", "in.png", "-o", "old.png", "--threads", "1"}, 3, {"'in.png'", "memory"},
                  setting);
}

/// From what is just enough to start the program to what is enough for the picture.
class LittleMemory : public FileError, public testing::WithParamInterface<const char*> {
protected:
    static constexpr std::size_t kStep = std::size_t{512} << 10;

    static std::size_t enoughToStart() {
        for (CommandSetting setting; setting.mostMemoryBytes < std::size_t{1} << 30;) {
            setting.mostMemoryBytes += kStep;
            if (runCommand({"--version"}, setting).ok()) {
                return setting.mostMemoryBytes;
            }
        }
        throw std::runtime_error("no memory is enough for the program");
    }
};

TEST_P(LittleMemory, EndsWithOneLineThatNamesThePicture) {
    writePng(folder_ / "in.png", randomPng(PngColor::kRgbAlpha, 16, 500, 500, 1));
    const std::vector<std::string> words = {"render", "in.png", "-o", "out.png", "--threads", GetParam()};
    const std::vector<std::string> before = folder_.names();
    CommandSetting setting;
    setting.folder = folder_.path();
    const std::string effectsText = "kovalune: not enough memory for the effect on 'in.png' (500x500)";
    int refusals = 0;
    for (setting.mostMemoryBytes = enoughToStart();; setting.mostMemoryBytes += kStep) {
        ASSERT_LT(setting.mostMemoryBytes, std::size_t{1} << 32);
        const CommandOutcome outcome = runCommand(words, setting);
        if (outcome.ok()) {
            break;
        }
        ASSERT_EQ(folder_.names(), before);
        ASSERT_TRUE(outcome.hasOneErrorLine()) << outcome.exitCode << ": " << outcome.err;
        if (outcome.exitCode == 4 && outcome.err.starts_with(effectsText)) {
            continue;
        }
        ASSERT_EQ(outcome.exitCode, 3) << outcome.err;
        ASSERT_NE(outcome.err.find("'in.png'"), std::string::npos) << outcome.err;
        ++refusals;
    }
    EXPECT_GT(refusals, 3);
}

INSTANTIATE_TEST_SUITE_P(FileError, LittleMemory, testing::Values("1", "4"));
#endif

} // namespace
} // namespace kovalune::test
