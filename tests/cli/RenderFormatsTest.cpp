// What `kovalune render` and `kovalune sheet` write from one format into another: the type of the samples, the
// kind of alpha, and the word about what is left out.

#include "pictures/PictureFile.h"
#include "tests/cli/ErrorCase.h"
#include "tests/pictures/ExrMaker.h"
#include "tests/pictures/Pictures.h"

namespace kovalune::test {

using namespace pictures;

namespace {

class RenderFormats : public ErrorCase {
protected:
    void write(const std::string& name, const Picture& picture) const {
        writeBytes(folder_ / name, encodePicture(*formatOfName(name), picture));
    }

    CommandOutcome run(const std::vector<std::string>& words) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }

    Picture rendered(const std::string& input, const std::string& output,
                     std::vector<std::string> words) const {
        words.insert(words.begin(), {"render", input, "-o", output, "--set", "Enable 1=off"});
        const CommandOutcome outcome = run(words);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return readPicture(folder_ / output);
    }
};

struct FormatCase {
    const char* input; ///< 8 bits, but for EXR, which has halves
    const char* depth;
    const char* output;
    SampleType type;
    AlphaKind alphaKind;
};

class RenderFormat : public RenderFormats, public testing::WithParamInterface<FormatCase> {};

TEST_P(RenderFormat, HasTheNearestDepthAndItsUsualAlpha) {
    const auto& [input, depth, output, type, alphaKind] = GetParam();
    const bool isExr = std::string(input).ends_with(".exr");
    Picture picture =
        isExr ? pictureWith(SampleType::kHalf, Channels::kRgbAlpha, 2, {0.25, 0.5, 0.125, 0.5, 0, 0, 0, 0})
              : pictureWith(SampleType::kUint8, Channels::kRgbAlpha, 2, {100, 50, 25, 128, 0, 0, 0, 0});
    picture.alphaKind = isExr ? AlphaKind::kPremultiplied : AlphaKind::kStraight;
    write(input, picture);
    const Picture result = rendered(input, output, {"--depth", depth});
    EXPECT_EQ(result.sampleType, type);
    EXPECT_EQ(result.alphaKind, alphaKind);
    EXPECT_EQ(result.channels, Channels::kRgbAlpha);
}

constexpr auto kStraight = AlphaKind::kStraight;
constexpr auto kPremultiplied = AlphaKind::kPremultiplied;

INSTANTIATE_TEST_SUITE_P(
    , RenderFormat,
    testing::Values(FormatCase{"a.tif", "auto", "b.tif", SampleType::kUint8, kStraight},
                    FormatCase{"a.tif", "16", "b.tif", SampleType::kUint16, kStraight},
                    FormatCase{"a.tif", "32", "b.tif", SampleType::kFloat, kStraight},
                    FormatCase{"a.tif", "32", "b.tga", SampleType::kUint8, kStraight},
                    FormatCase{"a.tif", "auto", "b.exr", SampleType::kHalf, kPremultiplied},
                    FormatCase{"a.tif", "16", "b.exr", SampleType::kFloat, kPremultiplied},
                    FormatCase{"a.tif", "32", "b.exr", SampleType::kFloat, kPremultiplied},
                    FormatCase{"a.exr", "auto", "b.exr", SampleType::kHalf, kPremultiplied},
                    FormatCase{"a.exr", "32", "b.exr", SampleType::kHalf, kPremultiplied},
                    FormatCase{"a.exr", "auto", "b.png", SampleType::kUint16, kStraight},
                    FormatCase{"a.exr", "8", "b.png", SampleType::kUint8, kStraight},
                    FormatCase{"a.exr", "auto", "b.tga", SampleType::kUint8, kStraight}));

TEST_F(RenderFormats, KeepFloatsOutsideOfWhiteBitForBit) {
    const Picture picture = randomPicture(SampleType::kFloat, Channels::kRgbAlpha, 9, 7, 5);
    write("a.tif", picture);
    EXPECT_TRUE(rendered("a.tif", "b.tif", {}).samples == readPicture(folder_ / "a.tif").samples);
}

TEST_F(RenderFormats, SaidToHoldStraightAlphaIsNotDivided) {
    Picture picture = pictureWith(SampleType::kFloat, Channels::kRgbAlpha, 1, {0.25, 0.5, 0.125, 0.5});
    picture.alphaKind = AlphaKind::kPremultiplied;
    write("a.exr", picture);
    const std::vector<double> divided = {0.5, 1.0, 0.25, 0.5};
    EXPECT_EQ(valuesOf(rendered("a.exr", "b.tif", {"--depth", "32"})), divided);
    EXPECT_EQ(valuesOf(rendered("a.exr", "b.tif", {"--depth", "32", "--alpha", "straight"})),
              (std::vector<double>{0.25, 0.5, 0.125, 0.5}));
    EXPECT_EQ(rendered("a.exr", "c.tif", {"--alpha", "premultiplied"}).alphaKind, AlphaKind::kPremultiplied);
}

TEST_F(RenderFormats, NameWhatIsLeftOut) {
    ExrSheet sheet;
    sheet.width = 2;
    sheet.height = 1;
    for (const char* name : {"B", "G", "R", "Z"}) {
        sheet.layers.push_back({name, Imf::HALF, halves({0.5F, 0.25F})});
    }
    writeBytes(folder_ / "a.exr", exrOf(sheet));
    for (const auto& [command, output] :
         {std::pair("render", "b.png"), {"smooth", "b.tif"}, {"sheet", "s.exr"}}) {
        const CommandOutcome outcome = run({command, "a.exr", "-o", output});
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_EQ(outcome.err, "kovalune: left out of 'a.exr': channel Z\n");
    }
    for (const char* const command : {"render", "smooth"}) {
        EXPECT_TRUE(run({command, "a.exr", "-o", "b.exr"}).ok());
        EXPECT_TRUE(valuesIn(bytesOf(folder_ / "b.exr"), 0, "Z") == sheet.layers[3].values);
    }
}

TEST_F(RenderFormats, LayersAndPartsAreChosenByNameAndNothingElseChanges) {
    ExrSheet main, more;
    main.width = more.width = 2;
    main.height = more.height = 1;
    main.name = "main";
    more.name = "more";
    for (const char* const name : {"B", "G", "R", "key.B", "key.G", "key.R"}) {
        main.layers.push_back({name, Imf::HALF, halves({0.5F, 0.25F})});
        more.layers.push_back({name, Imf::HALF, halves({0.125F, 0.25F})});
    }
    more.layers.push_back({"id", Imf::UINT, {7, 0xffffffffU}});
    writeBytes(folder_ / "a.exr", exrOf({main, more}));
    EXPECT_TRUE(
        run({"smooth", "a.exr", "-o", "b.exr", "--strength", "0", "--exr-layer", "key", "--exr-part", "more"})
            .ok());
    const std::vector<uint8_t> written = bytesOf(folder_ / "b.exr");
    for (const ExrLayer& layer : more.layers) {
        EXPECT_TRUE(valuesIn(written, 1, layer.name) == layer.values) << layer.name;
    }
    EXPECT_TRUE(valuesIn(written, 0, "key.R") == main.layers[5].values);
    EXPECT_NE(run({"pick", "a.exr", "0,0", "--exr-part", "2"}).out.find("red 0.125"), std::string::npos);
    EXPECT_NE(run({"colors", "a.exr", "--exr-part", "main"}).out.find("0.5"), std::string::npos);
    expectFailure({"render", "a.exr", "-o", "c.exr", "--exr-layer", "fill"}, 2,
                  {"cannot read 'a.exr': it has no layer 'fill'; its layers are key"});
    expectFailure({"render", "in.png", "-o", "c.exr", "--exr-part", "1"}, 2,
                  {"cannot read 'in.png' with --exr-layer or --exr-part: it is not an OpenEXR file"});
    expectFailure({"render", "a.exr", "-o", "c.exr", "--exr-part", "more", "--compression", "dwaa"}, 2,
                  {"--compression dwaa, which loses something: channel id of 'a.exr' is passed on"});
}

TEST_F(RenderFormats, SheetHasTheDepthOfTheFile) {
    write("a.tif", pictureWith(SampleType::kFloat, Channels::kRgb, 2, {-1, 0.5, 3, 0, 0, 0}));
    for (const auto& [name, type] : {std::pair("b.tif", SampleType::kFloat),
                                     {"b.exr", SampleType::kFloat},
                                     {"b.png", SampleType::kUint16}}) {
        EXPECT_TRUE(run({"sheet", "a.tif", "-o", name}).ok());
        const Picture sheet = readPicture(folder_ / name);
        EXPECT_EQ(sheet.sampleType, type);
        EXPECT_EQ(sheet.channels, Channels::kRgb);
    }
    const Picture sheet = readPicture(folder_ / "b.tif");
    // Below a name and a colour.
    const std::size_t first = (std::size_t{8 + 2 * 14} * sheet.width + 8) * 3;
    EXPECT_EQ(sheet.sample<float>(first), -1.0F);
    EXPECT_EQ(sheet.sample<float>(first + 1), 0.5F);
    EXPECT_EQ(sheet.sample<float>(first + 2), 3.0F);
}

TEST_F(RenderFormats, SheetOfHalvesHasHalves) {
    write("a.exr", pictureWith(SampleType::kHalf, Channels::kRgb, 2, {-1, 0.5, 3, 0, 0, 0}));
    EXPECT_TRUE(run({"sheet", "a.exr", "-o", "b.exr"}).ok());
    const Picture sheet = readPicture(folder_ / "b.exr");
    EXPECT_EQ(sheet.sampleType, SampleType::kHalf);
    const Picture source = readPicture(folder_ / "a.exr");
    // Below a name and a colour.
    const std::size_t first = (std::size_t{8 + 2 * 14} * sheet.width + 8) * 3;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        EXPECT_EQ(sheet.sample<uint16_t>(first + channel), source.sample<uint16_t>(channel));
    }
}

} // namespace
} // namespace kovalune::test
