// "-" for a picture: the standard input and the standard output, with every word on standard error.

#include "pictures/PictureFile.h"
#include "tests/cli/ErrorCase.h"
#include "tests/pictures/Pictures.h"

namespace kovalune::test {

using namespace pictures;

namespace {

class StandardStream : public ErrorCase {
protected:
    CommandSetting from(const std::string& input) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        setting.standardInput = folder_ / input;
        return setting;
    }

    static std::vector<uint8_t> bytes(const std::string& text) { return {text.begin(), text.end()}; }
};

TEST_F(StandardStream, GivesTheSameAsFilesDo) {
    const Picture source = randomPicture(SampleType::kUint8, Channels::kRgb, 12, 9, 4);
    for (const std::string end : {"png", "tif", "exr", "tga"}) {
        Picture fitting = source;
        if (end == "exr") {
            fitting = randomPicture(SampleType::kHalf, Channels::kRgb, 12, 9, 4);
        }
        writeBytes(folder_ / ("a." + end), encodePicture(*formatOfName("a." + end), fitting));
        for (const std::string command : {"render", "smooth", "sheet"}) {
            EXPECT_EQ(runCommand({command, "a." + end, "-o", "b." + end}, from("in.png")).exitCode, 0);
            const CommandOutcome outcome =
                runCommand({command, "-", "-o", "-", "--format", end}, from("a." + end));
            EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
            EXPECT_TRUE(bytes(outcome.out) == bytesOf(folder_ / ("b." + end))) << command << end;
        }
    }
}

TEST_F(StandardStream, IsReadByCommandsThatTellSomething) {
    writeBytes(folder_ / "a.tga", encodePicture(FileFormat::kTga, pictures::readPicture(folder_ / "in.png")));
    EXPECT_EQ(runCommand({"colors", "-"}, from("in.png")).out,
              runCommand({"colors", "in.png"}, from("in.png")).out);
    EXPECT_EQ(runCommand({"pick", "-", "3,4", "--in-format", "tga"}, from("a.tga")).out,
              runCommand({"pick", "a.tga", "3,4"}, from("in.png")).out);
    EXPECT_EQ(runCommand({"compare", "-", "a.tga"}, from("in.png")).exitCode, 0);
}

TEST_F(StandardStream, HasNothingButThePicture) {
    const CommandOutcome outcome =
        runCommand({"render", "in.png", "-o", "-", "--format", "png", "--print-params", "--report", "--time"},
                   from("in.png"));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(decodePicture(FileFormat::kPng, bytes(outcome.out), "out").width, 12U);
    for (const char* const word : {"View=", "Stage ", "reading "}) {
        EXPECT_NE(outcome.err.find(word), std::string::npos) << word;
    }
}

TEST_F(StandardStream, IsRefusedWhereItSaysTooLittleOrTooMuch) {
    expectFailure(
        {"render", "in.png", "-o", "-"}, 2,
        {"cannot write to the standard output: --format has to say what is written: png, tif, exr or tga"});
    expectFailure({"render", "in.png", "-o", "x.png", "--format", "png"}, 2,
                  {"cannot write 'x.png' with --format: it is for the standard output"});
    expectFailure({"render", "in.png", "-o", "-", "--format", "jpg"}, 2,
                  {"--format takes png, tif, exr or tga"});
    expectFailure({"render", "in.png", "-o", "-", "--format", "tga", "--out-depth", "16"}, 2,
                  {"TGA files have 8\n"});
    expectFailure({"render", "in.png", "-o", "x.png", "--in-format", "tga"}, 2,
                  {"cannot read 'in.png' as TGA: by its name it is a PNG file"});
    expectFailure({"pick", "-", "0,0", "--in-format", "png"}, 2, {"--in-format takes tga, not 'png'"});
    expectFailure({"compare", "-", "-"}, 2, {"only one of them can be the standard input"});
    expectFailure({"pick", "-", "0,0"}, 3, {"cannot read 'standard input': it is empty"}, from("/dev/null"));
    expectFailure({"pick", "-", "0,0"}, 3,
                  {"cannot read 'standard input': it is not a picture of a known kind"}, from("old.png"));
}

TEST_F(StandardStream, ThatIsFullIsAFailure) {
    CommandSetting full = from("in.png");
    full.standardOutput = "/dev/full";
    expectFailure({"render", "in.png", "-o", "-", "--format", "png"}, 3,
                  {"cannot write to the standard output: No space left on device"}, full);
}

} // namespace
} // namespace kovalune::test
