#include "pictures/exr/ExrFile.h"

#include "tests/pictures/DamagedBytes.h"
#include "tests/pictures/ExrMaker.h"
#include "tests/pictures/Pictures.h"
#include "tests/support/Effort.h"
#include "text/Failure.h"

#include <ImfChannelList.h>
#include <ImfFloatAttribute.h>
#include <ImfIntAttribute.h>
#include <ImfOpaqueAttribute.h>
#include <ImfPreviewImage.h>
#include <ImfStandardAttributes.h>
#include <ImfStringAttribute.h>
#include <ImfStringVectorAttribute.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace kovalune::test {

using namespace pictures;
using namespace text;

namespace {

constexpr Channels kAllChannels[] = {Channels::kGrey, Channels::kGreyAlpha, Channels::kRgb,
                                     Channels::kRgbAlpha};
constexpr SampleType kTypes[] = {SampleType::kHalf, SampleType::kFloat};

Picture decode(const std::vector<uint8_t>& bytes) {
    return decodeExr(bytes, "in.exr");
}

Imf::PixelType pixelType(SampleType type) {
    return type == SampleType::kHalf ? Imf::HALF : Imf::FLOAT;
}

std::vector<std::string> namesOf(Channels channels) {
    std::vector<std::string> names =
        isGrey(channels) ? std::vector<std::string>{"Y"} : std::vector<std::string>{"R", "G", "B"};
    if (hasAlpha(channels)) {
        names.emplace_back("A");
    }
    return names;
}

ExrSheet sheetOf(int width, int height) {
    ExrSheet sheet;
    sheet.width = width;
    sheet.height = height;
    return sheet;
}

void addLayers(ExrSheet& sheet, Channels channels, SampleType type, uint32_t seed) {
    sheet.layers.clear();
    for (const std::string& name : namesOf(channels)) {
        sheet.layers.push_back(randomLayer(name, pixelType(type), sheet, ++seed));
    }
}

/// Expects the bits of the layers in the order that the picture has them.
void expectSamples(const Picture& picture, const std::vector<ExrLayer>& layers) {
    const std::size_t bytes = bytesPerSample(picture.sampleType);
    ASSERT_EQ(picture.samples.size(), layers.size() * layers[0].values.size() * bytes);
    for (std::size_t i = 0; i < layers[0].values.size(); ++i) {
        for (std::size_t channel = 0; channel < layers.size(); ++channel) {
            uint32_t bits = 0;
            std::memcpy(&bits, picture.samples.data() + (i * layers.size() + channel) * bytes, bytes);
            ASSERT_EQ(bits, layers[channel].values[i]) << layers[channel].name << i;
        }
    }
}

void expectRefused(const std::vector<uint8_t>& bytes, const std::vector<std::string>& parts) {
    const std::string text = refusalOf(decodeExr, bytes);
    EXPECT_NE(text, "");
    for (const std::string& part : parts) {
        EXPECT_NE(text.find(part), std::string::npos) << text << " lacks " << part;
    }
}

void expectSame(const Picture& picture, const Picture& expected) {
    EXPECT_EQ(picture.width, expected.width);
    EXPECT_EQ(picture.height, expected.height);
    EXPECT_EQ(picture.channels, expected.channels);
    EXPECT_EQ(picture.sampleType, expected.sampleType);
    EXPECT_EQ(picture.alphaKind, AlphaKind::kPremultiplied);
    EXPECT_TRUE(picture.samples == expected.samples);
    EXPECT_EQ(picture.format, FileFormat::kExr);
    EXPECT_TRUE(picture.leftOut.empty());
}

struct Storage {
    const char* name;
    Imf::Compression compression;
    Imf::LineOrder lineOrder;
    int tileWidth;
    int tileHeight;
};

class ExrStorage : public testing::TestWithParam<Storage> {};

TEST_P(ExrStorage, GivesTheSamplesOfEveryKind) {
    uint32_t seed = 1;
    for (const SampleType type : kTypes) {
        if (GetParam().compression == Imf::PXR24_COMPRESSION && type == SampleType::kFloat) {
            continue; // cuts floats
        }
        for (const Channels channels : kAllChannels) {
            ExrSheet sheet = sheetOf(37, 41);
            sheet.compression = GetParam().compression;
            sheet.lineOrder = GetParam().lineOrder;
            sheet.tileWidth = GetParam().tileWidth;
            sheet.tileHeight = GetParam().tileHeight;
            addLayers(sheet, channels, type, seed += 10);
            const Picture picture = decode(exrOf(sheet));
            EXPECT_EQ(picture.width, 37U);
            EXPECT_EQ(picture.height, 41U);
            EXPECT_EQ(picture.channels, channels);
            EXPECT_EQ(picture.sampleType, type);
            EXPECT_EQ(picture.alphaKind, AlphaKind::kPremultiplied);
            EXPECT_TRUE(picture.leftOut.empty());
            expectSamples(picture, sheet.layers);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Each, ExrStorage,
    testing::Values(Storage{"None", Imf::NO_COMPRESSION, Imf::INCREASING_Y, 0, 0},
                    Storage{"Rle", Imf::RLE_COMPRESSION, Imf::INCREASING_Y, 0, 0},
                    Storage{"Zips", Imf::ZIPS_COMPRESSION, Imf::INCREASING_Y, 0, 0},
                    Storage{"Zip", Imf::ZIP_COMPRESSION, Imf::INCREASING_Y, 0, 0},
                    Storage{"Piz", Imf::PIZ_COMPRESSION, Imf::INCREASING_Y, 0, 0},
                    Storage{"Pxr24", Imf::PXR24_COMPRESSION, Imf::INCREASING_Y, 0, 0},
                    Storage{"BottomFirst", Imf::ZIP_COMPRESSION, Imf::DECREASING_Y, 0, 0},
                    Storage{"Tiles", Imf::ZIP_COMPRESSION, Imf::INCREASING_Y, 16, 8},
                    Storage{"TilesInAnyOrder", Imf::PIZ_COMPRESSION, Imf::RANDOM_Y, 8, 16},
                    Storage{"TileLargerThanThePicture", Imf::NO_COMPRESSION, Imf::INCREASING_Y, 64, 128}),
    [](const auto& each) { return std::string(each.param.name); });

class ExrLossy : public testing::TestWithParam<Imf::Compression> {};

TEST_P(ExrLossy, IsReadNearlyAndWrittenWithoutLoss) {
    for (const SampleType type : kTypes) {
        ExrSheet sheet = sheetOf(20, 20);
        sheet.compression = GetParam();
        const std::vector<float> values(400, 0.3F);
        for (const char* const name : {"R", "G", "B", "A"}) {
            sheet.layers.push_back(
                {name, pixelType(type), type == SampleType::kHalf ? halves(values) : floats(values)});
        }
        const Picture picture = decode(exrOf(sheet));
        for (const double value : valuesOf(picture)) {
            ASSERT_NEAR(value, 0.3, 0.002);
        }
        const bool isKept = GetParam() == Imf::PXR24_COMPRESSION && type == SampleType::kHalf;
        EXPECT_EQ(picture.notes.size(), isKept ? 1U : 0U);
        const std::vector<uint8_t> bytes = encodeExr(picture);
        EXPECT_EQ(headerOf(bytes).compression(), isKept ? GetParam() : Imf::ZIP_COMPRESSION);
        EXPECT_TRUE(decode(bytes).samples == picture.samples);
    }
}

INSTANTIATE_TEST_SUITE_P(Each, ExrLossy,
                         testing::Values(Imf::PXR24_COMPRESSION, Imf::B44_COMPRESSION, Imf::B44A_COMPRESSION,
                                         Imf::DWAA_COMPRESSION, Imf::DWAB_COMPRESSION));

TEST(ExrTypes, AreFloatIfAnyIs) {
    ExrSheet sheet = sheetOf(2, 1);
    sheet.layers = {{"R", Imf::HALF, halves({0.5F, -2.0F})},
                    {"G", Imf::FLOAT, floats({0.125F, 0x1p100F})},
                    {"B", Imf::HALF, halves({65504.0F, 0.0F})}};
    const Picture picture = decode(exrOf(sheet));
    EXPECT_EQ(picture.sampleType, SampleType::kFloat);
    EXPECT_EQ(valuesOf(picture), (std::vector<double>{0.5, 0.125, 65504, -2, 0x1p100, 0}));
}

TEST(ExrChannels, BesidesTheColoursAreNamedOnly) {
    ExrSheet sheet = sheetOf(4, 2);
    addLayers(sheet, Channels::kRgb, SampleType::kHalf, 1);
    const std::vector<ExrLayer> colours = sheet.layers;
    sheet.layers.push_back(randomLayer("Z", Imf::FLOAT, sheet, 9));
    sheet.layers.push_back(randomLayer("Y", Imf::HALF, sheet, 9));
    sheet.layers.push_back(randomLayer("diffuse.R", Imf::HALF, sheet, 9));
    sheet.layers.push_back(randomLayer("id", Imf::UINT, sheet, 9));
    sheet.layers.push_back({"small", Imf::HALF, {}, 2});
    const Picture picture = decode(exrOf(sheet));
    EXPECT_EQ(picture.sampleType, SampleType::kHalf);
    EXPECT_EQ(picture.channels, Channels::kRgb);
    expectSamples(picture, colours);
    EXPECT_EQ(picture.passedOn,
              (std::vector<std::string>{"channel Y", "channel Z", "channel diffuse.R", "channel id"}));
    EXPECT_EQ(picture.leftOut, std::vector<std::string>{"channel small"});
}

TEST(ExrParts, TheFirstWithColoursIsReadAndTheOthersNamed) {
    ExrSheet depth = sheetOf(4, 2), colours = sheetOf(5, 7), more = sheetOf(3, 3);
    depth.name = "depth";
    depth.layers = {randomLayer("Z", Imf::FLOAT, depth, 1)};
    colours.name = "main";
    colours.x = -3;
    colours.tileWidth = colours.tileHeight = 4;
    colours.moreAttributes = [](Imf::Header& header) {
        header.displayWindow() = Imath::Box2i({0, 0}, {9, 9});
    };
    depth.moreAttributes = more.moreAttributes = colours.moreAttributes;
    addLayers(colours, Channels::kRgbAlpha, SampleType::kFloat, 2);
    more.name = "more";
    addLayers(more, Channels::kRgb, SampleType::kHalf, 3);
    const Picture picture = decode(exrOf({depth, colours, more}));
    EXPECT_EQ(picture.width, 5U);
    EXPECT_EQ(picture.height, 7U);
    expectSamples(picture, colours.layers);
    EXPECT_EQ(picture.passedOn, (std::vector<std::string>{"part depth", "part more"}));
    EXPECT_TRUE(picture.leftOut.empty());
    const Imf::Header header = headersOf(encodeExr(picture)).at(1);
    EXPECT_EQ(header.dataWindow(), Imath::Box2i({-3, 0}, {1, 6}));
    EXPECT_EQ(header.displayWindow(), Imath::Box2i({0, 0}, {9, 9}));
    EXPECT_EQ(header.name(), "main");
    EXPECT_FALSE(header.hasTileDescription());
}

TEST(ExrRefusal, NamesTheChannels) {
    const auto with = [](const std::vector<std::string>& names, Imf::PixelType type = Imf::HALF) {
        ExrSheet sheet = sheetOf(4, 2);
        for (const std::string& name : names) {
            sheet.layers.push_back(randomLayer(name, type, sheet, 1));
        }
        return sheet;
    };
    expectRefused(exrOf(with({"R", "B"})), {"no channel G", "its channels are B, R"});
    expectRefused(exrOf(with({"R", "Z"})), {"no channel G, B", "R, Z"});
    expectRefused(exrOf(with({"Z", "left.R"})), {"Z, left.R"});
    expectRefused(exrOf(with({"A"})), {"its channels are A"});
    expectRefused(exrOf(with({"R", "G", "B"}, Imf::UINT)), {"channel R", "whole numbers"});
    ExrSheet chroma = with({"Y"});
    chroma.layers.push_back({"RY", Imf::HALF, {}, 2});
    chroma.layers.push_back({"BY", Imf::HALF, {}, 2});
    expectRefused(exrOf(chroma), {"luminance and chroma", "RY"});
    ExrSheet coarse = with({"G", "B"});
    coarse.layers.push_back({"R", Imf::HALF, {}, 2});
    expectRefused(exrOf(coarse), {"channel R", "subsampled"});
    expectRefused(deepExr(3, 2), {"deep"});
}

TEST(ExrKind, IsKnownByItsBeginning) {
    expectRefused({}, {"it is empty"});
    expectRefused({0x76, 0x2f}, {"not an OpenEXR"});
    expectRefused({'I', 'I', 42, 0, 8, 0, 0, 0}, {"not an OpenEXR"});
    expectRefused({0x76, 0x2f, 0x31, 0x01, 2}, {"cut short"});
    EXPECT_TRUE(beginsAsExr(std::vector<uint8_t>{0x76, 0x2f, 0x31, 0x01}));
}

void patchInt(std::vector<uint8_t>& bytes, std::size_t place, int32_t value) {
    std::memcpy(bytes.data() + place, &value, 4);
}

TEST(ExrSize, OfAHeaderIsCheckedFirst) {
    for (const Imf::Compression compression :
         {Imf::NO_COMPRESSION, Imf::ZIP_COMPRESSION, Imf::DWAB_COMPRESSION}) {
        ExrSheet sheet = sheetOf(2, 2);
        sheet.compression = compression;
        addLayers(sheet, Channels::kRgb, SampleType::kHalf, 1);
        const std::vector<uint8_t> sound = exrOf(sheet);
        const auto sized = [&sound](int32_t xMax, int32_t yMax) {
            std::vector<uint8_t> bytes = sound;
            const std::size_t place = valuePlace(bytes, "dataWindow", "box2i");
            patchInt(bytes, place + 8, xMax);
            patchInt(bytes, place + 12, yMax);
            return bytes;
        };
        expectRefused(sized(-1, 1), {"damaged", "0 x 2 pixels"});
        expectRefused(sized(1, -7), {"damaged", "2 x 0 pixels"});
        expectRefused(sized(30000, 0), {"30001 x 1 pixels", "30000 x 30000"});
        expectRefused(sized(0x7fffffff, 0), {"2147483648 x 1 pixels"});
        expectRefused(sized(1, 29999), {"cut short: 2 x 30000 pixels need more bytes"});
        expectRefused(sized(29999, 29999), {"cut short: 30000 x 30000 pixels need more bytes"});
        expectRefused(sized(0x7fffffff, 0x7fffffff), {"2147483648 x 2147483648 pixels"});
    }
}

TEST(ExrSize, OfTilesIsCheckedToo) {
    ExrSheet sheet = sheetOf(4, 4);
    sheet.tileWidth = sheet.tileHeight = 4;
    addLayers(sheet, Channels::kRgb, SampleType::kHalf, 1);
    const std::vector<uint8_t> sound = exrOf(sheet);
    const auto sized = [&sound](int32_t tileWidth, int32_t tileHeight, int32_t xMax) {
        std::vector<uint8_t> bytes = sound;
        const std::size_t place = valuePlace(bytes, "tiles", "tiledesc");
        patchInt(bytes, place, tileWidth);
        patchInt(bytes, place + 4, tileHeight);
        patchInt(bytes, valuePlace(bytes, "dataWindow", "box2i") + 8, xMax);
        return bytes;
    };
    expectRefused(sized(0, 4, 3), {"damaged", "0 x 4 pixels"});
    expectRefused(sized(0x7fffffff, 4, 3), {"damaged", "tiles"});
    expectRefused(sized(1, 1, 29999), {"cut short"});
    expectRefused(sized(1, 1, 0x7fffffff), {"cut short"});
}

TEST(ExrSize, MayBeHeldByFewBytesOfFlatColour) {
    for (int compression = 0; compression < Imf::NUM_COMPRESSION_METHODS; ++compression) {
        for (const Imf::PixelType type : {Imf::HALF, Imf::FLOAT}) {
            constexpr int kHeight = cases(300);
            ExrSheet sheet = sheetOf(1500, kHeight);
            sheet.compression = static_cast<Imf::Compression>(compression);
            for (const char* const name : {"R", "G", "B", "A"}) {
                sheet.layers.push_back({name, type, std::vector<uint32_t>(std::size_t{1500} * kHeight, 0)});
            }
            const Picture picture = decode(exrOf(sheet));
            EXPECT_EQ(picture.samples.size(), picture.byteCount());
            EXPECT_TRUE(std::all_of(picture.samples.begin(), picture.samples.end(),
                                    [](uint8_t byte) { return byte == 0; }));
        }
    }
}

TEST(ExrHeaders, ThatTellOfMoreThanThereIsAreRefused) {
    ExrSheet sheet = sheetOf(2, 2);
    addLayers(sheet, Channels::kRgb, SampleType::kHalf, 1);
    sheet.moreAttributes = [](Imf::Header& header) {
        header.insert("words", Imf::StringVectorAttribute({"one", "two"}));
        header.setPreviewImage(Imf::PreviewImage(2, 2));
        header.insert("real", Imf::FloatAttribute(1.0F));
    };
    const std::vector<uint8_t> sound = exrOf(sheet);
    EXPECT_EQ(refusalOf(decodeExr, sound), "");
    const auto patched = [&sound](const char* name, const char* type, std::ptrdiff_t at, int32_t value) {
        std::vector<uint8_t> bytes = sound;
        const auto place = static_cast<std::ptrdiff_t>(valuePlace(bytes, name, type)) + at;
        patchInt(bytes, static_cast<std::size_t>(place), value);
        return bytes;
    };
    expectRefused(patched("words", "stringvector", 0, 0x7fffffff), {"attribute words"});
    expectRefused(patched("words", "stringvector", 0, -1), {"attribute words"});
    expectRefused(patched("words", "stringvector", -4, 0x7fffffff), {"cut short"});
    expectRefused(patched("words", "stringvector", -4, -5), {"attribute words"});
    expectRefused(patched("preview", "preview", 0, 0x10000), {"attribute preview"});
    expectRefused(patched("real", "float", -4, 8), {"damaged"});
    std::vector<uint8_t> unknown = sound;
    unknown[valuePlace(unknown, "compression", "compression")] = 77;
    expectRefused(unknown, {"number 77"});
}

TEST(ExrRoundTrip, IsExact) {
    uint32_t seed = 100;
    for (const SampleType type : kTypes) {
        for (const Channels channels : kAllChannels) {
            for (const uint32_t width : {1U, 2U, 7U, 301U}) {
                Picture picture = randomPicture(type, channels, width, 1 + seed % 150, seed);
                ++seed;
                const Picture again = decode(encodeExr(picture));
                expectSame(again, picture);
                EXPECT_TRUE(again.notes.empty());
            }
        }
    }
}

TEST(ExrRoundTrip, KeepsALosslessCompression) {
    uint32_t seed = 300;
    for (uint8_t compression = 0; compression < Imf::B44_COMPRESSION; ++compression) {
        for (const SampleType type : kTypes) {
            Picture picture = randomPicture(type, Channels::kRgbAlpha, 65, 77, ++seed);
            picture.format = FileFormat::kExr;
            picture.notes = {{"compression", "compression", {compression}}};
            const std::vector<uint8_t> bytes = encodeExr(picture);
            const bool isCut = compression == Imf::PXR24_COMPRESSION && type == SampleType::kFloat;
            EXPECT_EQ(headerOf(bytes).compression(), static_cast<Imf::Compression>(isCut ? 3 : compression));
            const Picture again = decode(bytes);
            expectSame(again, picture);
            EXPECT_EQ(again.notes == picture.notes, !isCut && compression != Imf::ZIP_COMPRESSION);
        }
    }
}

void addAttributes(Imf::Header& header) {
    header.displayWindow() = Imath::Box2i({0, 0}, {1919, 1079});
    header.pixelAspectRatio() = 2.0F;
    header.screenWindowCenter() = Imath::V2f(0.5F, -0.25F);
    header.screenWindowWidth() = 3.0F;
    Imf::addXDensity(header, 300.0F);
    Imf::addChromaticities(header,
                           Imf::Chromaticities({0.7F, 0.3F}, {0.2F, 0.8F}, {0.1F, 0.05F}, {0.3F, 0.3F}));
    Imf::addOwner(header, "the \xe7\xb5\xb5 studio");
    Imf::addTimeCode(header, Imf::TimeCode(1, 2, 3, 4));
    header.insert("anAttributeWithANameOfMoreThan31Letters", Imf::IntAttribute(-7));
    header.insert("words", Imf::StringVectorAttribute({"one", "", "three"}));
    Imf::OpaqueAttribute unknown("somethingNew");
    header.insert("unheardOf", unknown);
    header.setPreviewImage(Imf::PreviewImage(2, 2));
}

TEST(ExrNotes, AreTheAttributesAndGoThroughUnchanged) {
    ExrSheet sheet = sheetOf(6, 5);
    sheet.x = -100;
    sheet.y = 40;
    sheet.compression = Imf::PIZ_COMPRESSION;
    sheet.lineOrder = Imf::DECREASING_Y;
    sheet.moreAttributes = addAttributes;
    addLayers(sheet, Channels::kRgbAlpha, SampleType::kHalf, 1);
    const Picture first = decode(exrOf(sheet));
    std::vector<std::string> names;
    for (const PictureNote& note : first.notes) {
        names.push_back(note.name + " " + note.type);
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names,
              (std::vector<std::string>{
                  "anAttributeWithANameOfMoreThan31Letters int", "chromaticities chromaticities",
                  "compression compression", "dataWindow box2i", "displayWindow box2i", "owner string",
                  "pixelAspectRatio float", "screenWindowCenter v2f", "screenWindowWidth float",
                  "timeCode timecode", "unheardOf somethingNew", "words stringvector", "xDensity float"}));
    const std::vector<uint8_t> bytes = encodeExr(first);
    const Imf::Header header = headerOf(bytes);
    EXPECT_EQ(header.dataWindow(), Imath::Box2i({-100, 40}, {-95, 44}));
    EXPECT_EQ(header.displayWindow(), Imath::Box2i({0, 0}, {1919, 1079}));
    EXPECT_EQ(header.pixelAspectRatio(), 2.0F);
    EXPECT_EQ(header.screenWindowCenter(), Imath::V2f(0.5F, -0.25F));
    EXPECT_EQ(header.screenWindowWidth(), 3.0F);
    EXPECT_EQ(Imf::xDensity(header), 300.0F);
    EXPECT_EQ(Imf::chromaticities(header).green.y, 0.8F);
    EXPECT_EQ(Imf::owner(header), "the \xe7\xb5\xb5 studio");
    EXPECT_EQ(header.lineOrder(), Imf::INCREASING_Y);
    EXPECT_EQ(header.compression(), Imf::PIZ_COMPRESSION);
    const Picture second = decode(bytes);
    expectSame(second, first);
    EXPECT_TRUE(second.notes == first.notes);
}

TEST(ExrNotes, ThatMakeNoSenseAreLeftOut) {
    Picture picture = randomPicture(SampleType::kHalf, Channels::kRgb, 3, 2, 1);
    picture.format = FileFormat::kExr;
    picture.notes = {{"", "int", {1, 2, 3, 4}},
                     {"pixelAspectRatio", "int", {1, 2, 3, 4}},
                     {"xDensity", "float", {1, 2, 3}},
                     {"words", "stringvector", {255, 255, 255, 127}},
                     {"channels", "chlist", {0}},
                     {"tiles", "tiledesc", {16, 0, 0, 0, 16, 0, 0, 0, 0}},
                     {"compression", "compression", {77}},
                     {"dataWindow", "box2i", {0, 0, 0, 0, 0, 0, 0, 0, 9, 0, 0, 0, 9, 0, 0, 0}},
                     {"282", "5", {72, 0, 0, 0, 1, 0, 0, 0}}};
    const std::vector<uint8_t> bytes = encodeExr(picture);
    const Picture again = decode(bytes);
    expectSame(again, picture);
    ASSERT_EQ(again.notes.size(), 1U); // of an unknown type, and nobody's business
    EXPECT_TRUE(again.notes[0] == picture.notes.back());
    picture.format = FileFormat::kTiff;
    EXPECT_TRUE(decode(encodeExr(picture)).notes.empty());
}

TEST(ExrOutput, IsRefusedForWholeNumbers) {
    EXPECT_THROW(encodeExr(randomPicture(SampleType::kUint8, Channels::kRgb, 2, 2, 1)), Failure);
}

std::vector<std::vector<uint8_t>> tinyFiles() {
    std::vector<std::vector<uint8_t>> files;
    for (int compression = 0; compression < Imf::NUM_COMPRESSION_METHODS; ++compression) {
        ExrSheet sheet = sheetOf(5, 3);
        sheet.x = 2;
        sheet.compression = static_cast<Imf::Compression>(compression);
        const bool isTiled = compression % 3 == 2;
        sheet.tileWidth = sheet.tileHeight = isTiled ? 4 : 0;
        const SampleType type = compression % 2 == 0 ? SampleType::kHalf : SampleType::kFloat;
        const std::vector<float> values(15, 0.5F);
        for (const char* const name : {"R", "G", "B", "A"}) {
            sheet.layers.push_back(
                {name, pixelType(type), type == SampleType::kHalf ? halves(values) : floats(values)});
        }
        if (compression == Imf::ZIP_COMPRESSION) {
            sheet.moreAttributes = addAttributes;
        }
        files.push_back(exrOf(sheet));
    }
    ExrSheet first = sheetOf(2, 2), second = sheetOf(2, 2);
    first.name = "one";
    first.layers = {randomLayer("Z", Imf::HALF, first, 1)};
    second.name = "two";
    second.tileWidth = second.tileHeight = 2;
    addLayers(second, Channels::kGreyAlpha, SampleType::kHalf, 2);
    files.push_back(exrOf({first, second}));
    return files;
}

class TinyExr : public testing::TestWithParam<std::size_t> {};

TEST_P(TinyExr, IsRefusedWhereverItEnds) {
    const std::vector<uint8_t> file = tinyFiles()[GetParam()];
    EXPECT_EQ(refusalOf(decodeExr, file), "");
    expectBeginningsRefused(decodeExr, file, file.size());
}

TEST_P(TinyExr, MayHaveAnyByteWrong) {
    expectWrongBytesBorne(decodeExr, tinyFiles()[GetParam()], std::size_t{768} << 20);
}

INSTANTIATE_TEST_SUITE_P(Each, TinyExr, testing::Range(std::size_t{0}, std::size_t{11}));

} // namespace
} // namespace kovalune::test
