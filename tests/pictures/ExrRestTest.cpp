// What an OpenEXR file holds besides the picture: which layer and part is read, and that all else comes out again.

#include "pictures/PictureFile.h"
#include "pictures/exr/ExrFile.h"
#include "tests/pictures/DamagedBytes.h"
#include "tests/pictures/ExrMaker.h"
#include "tests/pictures/Pictures.h"
#include "text/Failure.h"

#include <ImfChannelList.h>
#include <ImfStringAttribute.h>
#include <ImfStringVectorAttribute.h>
#include <gtest/gtest.h>

namespace kovalune::test {

using namespace pictures;
using namespace text;

namespace {

using Names = std::vector<std::string>;

ExrSheet sheetOf(int width, int height, const std::string& name = {}) {
    ExrSheet sheet;
    sheet.width = width;
    sheet.height = height;
    sheet.name = name;
    sheet.moreAttributes = [](Imf::Header& header) {
        header.displayWindow() = Imath::Box2i({0, 0}, {63, 63});
    };
    return sheet;
}

void add(ExrSheet& sheet, const Names& names, Imf::PixelType type) {
    for (const std::string& name : names) {
        sheet.layers.push_back(
            randomLayer(name, type, sheet, static_cast<uint32_t>(sheet.layers.size() + 7)));
    }
}

Picture with(const std::vector<uint8_t>& file, const DecodeOptions& options) {
    return decodeExrWith(file, "in.exr", options);
}

void expectLayers(const std::vector<uint8_t>& file, int part, const ExrSheet& sheet) {
    for (const ExrLayer& layer : sheet.layers) {
        EXPECT_TRUE(valuesIn(file, part, layer.name) == layer.values) << part << layer.name;
    }
}

std::string failureOf(const std::vector<uint8_t>& file, const DecodeOptions& options) {
    try {
        with(file, options);
    } catch (const Failure& failure) {
        return failure.what();
    }
    return {};
}

TEST(ExrRest, ChannelsOfEveryTypeComeOutAtTheSameWindow) {
    for (const int tile : {0, 8}) {
        ExrSheet sheet = sheetOf(19, 40);
        sheet.x = -5;
        sheet.y = 12;
        sheet.tileWidth = sheet.tileHeight = tile;
        add(sheet, {"R", "G", "B", "A"}, Imf::HALF);
        add(sheet, {"Z", "N.x"}, Imf::FLOAT);
        add(sheet, {"id", "object.id"}, Imf::UINT);
        add(sheet, {"diffuse.R"}, Imf::HALF);
        const std::vector<uint8_t> file = encodeExr(with(exrOf(sheet), {}));
        expectLayers(file, 0, sheet);
        EXPECT_EQ(headerOf(file).dataWindow(), Imath::Box2i({-5, 12}, {13, 51}));
        EXPECT_EQ(headerOf(file).displayWindow(), Imath::Box2i({0, 0}, {63, 63}));
        EXPECT_EQ(headerOf(file).channels()["id"].type, Imf::UINT);
    }
}

TEST(ExrRest, AWrittenPictureTakesThePlaceOfTheOldOneAlone) {
    ExrSheet sheet = sheetOf(4, 4);
    add(sheet, {"R", "G", "B"}, Imf::HALF);
    add(sheet, {"Z"}, Imf::FLOAT);
    Picture picture = with(exrOf(sheet), {});
    std::fill(picture.samples.begin(), picture.samples.end(), uint8_t{0});
    const std::vector<uint8_t> file = encodeExr(picture);
    EXPECT_TRUE(valuesIn(file, 0, "G") == std::vector<uint32_t>(16, 0));
    EXPECT_TRUE(valuesIn(file, 0, "Z") == sheet.layers[3].values);
}

// Packed samples go over as they are, so that what is lossy loses nothing more, and tiles stay tiles.
TEST(ExrRest, PartsComeOutAsTheyWere) {
    for (int compression = 0; compression < 10; ++compression) {
        ExrSheet before = sheetOf(33, 65, "before"), main = sheetOf(9, 7, "main"),
                 tiles = sheetOf(30, 21, "tiles");
        before.compression = tiles.compression = static_cast<Imf::Compression>(compression);
        before.lineOrder = Imf::DECREASING_Y;
        tiles.tileWidth = 16;
        tiles.tileHeight = 8;
        add(before, {"R", "G", "B"}, Imf::HALF);
        add(before, {"Z"}, Imf::FLOAT);
        add(main, {"R", "G", "B", "A"}, Imf::HALF);
        add(tiles, {"Y", "id"}, Imf::HALF);
        before.moreAttributes = [](Imf::Header& header) {
            header.displayWindow() = Imath::Box2i({0, 0}, {63, 63});
            header.insert("note", Imf::StringAttribute("kept"));
        };
        const std::vector<uint8_t> old = exrOf({before, main, tiles});
        const std::vector<uint8_t> file = encodeExr(with(old, {.exrPart = "main"}));
        const std::vector<Imf::Header> headers = headersOf(file);
        ASSERT_EQ(headers.size(), 3U);
        expectLayers(file, 1, main);
        for (const auto& [part, sheet] : {std::pair{0, &before}, {2, &tiles}}) {
            const Imf::Header& header = headers[static_cast<std::size_t>(part)];
            EXPECT_EQ(header.name(), sheet->name);
            EXPECT_EQ(header.compression(), sheet->compression);
            EXPECT_EQ(header.lineOrder(), sheet->lineOrder);
            EXPECT_EQ(header.hasTileDescription(), sheet->tileWidth != 0);
            for (const ExrLayer& layer : sheet->layers) {
                EXPECT_TRUE(valuesIn(file, part, layer.name) == valuesIn(old, part, layer.name))
                    << layer.name;
            }
        }
        EXPECT_EQ(headers[0].typedAttribute<Imf::StringAttribute>("note").value(), "kept");
    }
}

TEST(ExrRest, DeepPartsAndSubsampledChannelsAreLeftOutByName) {
    ExrSheet deep = sheetOf(3, 3, "smoke"), main = sheetOf(4, 2, "main");
    deep.deep = true;
    add(main, {"R", "G", "B"}, Imf::HALF);
    main.layers.push_back({"coarse", Imf::HALF, {}, 2});
    const Picture picture = with(exrOf({deep, main}), {});
    EXPECT_EQ(picture.leftOut, (Names{"channel coarse", "part smoke"}));
    EXPECT_TRUE(picture.passedOn.empty());
    EXPECT_EQ(picture.exrRest, nullptr);
    const std::vector<Imf::Header> headers = headersOf(encodeExr(picture));
    ASSERT_EQ(headers.size(), 1U);
    EXPECT_EQ(headers[0].channels().findChannel("coarse"), nullptr);
    ExrSheet more = sheetOf(2, 2, "more");
    add(more, {"Z"}, Imf::FLOAT);
    const std::vector<uint8_t> file = encodeExr(with(exrOf({deep, main, more}), {}));
    ASSERT_EQ(headersOf(file).size(), 2U);
    EXPECT_EQ(headersOf(file)[0].name(), "main");
    expectLayers(file, 1, more);
    EXPECT_NE(failureOf(exrOf({deep, main}), {.exrPart = "smoke"}).find("part smoke holds deep data"),
              std::string::npos);
}

TEST(ExrRest, WhatTellsOfSeveralChannelsStays) {
    ExrSheet sheet = sheetOf(4, 4);
    add(sheet, {"R", "G", "B", "left.R", "left.G", "left.B"}, Imf::HALF);
    sheet.moreAttributes = [](Imf::Header& header) {
        header.insert("multiView", Imf::StringVectorAttribute({"right", "left"}));
    };
    const Imf::Header header = headerOf(encodeExr(with(exrOf(sheet), {})));
    EXPECT_EQ(header.typedAttribute<Imf::StringVectorAttribute>("multiView").value(),
              (Names{"right", "left"}));
}

TEST(ExrChoice, ReadsTheLayerAndWritesItUnderItsNames) {
    ExrSheet sheet = sheetOf(6, 5);
    add(sheet, {"R", "G", "B", "A", "key.light.R", "key.light.G", "key.light.B", "mono.Y"}, Imf::HALF);
    const std::vector<uint8_t> old = exrOf(sheet);
    const Picture key = with(old, {.exrLayer = "key.light"});
    EXPECT_EQ(key.channels, Channels::kRgb);
    EXPECT_EQ(key.sample<uint16_t>(0), sheet.layers[4].values[0]);
    EXPECT_EQ(key.passedOn, (Names{"channel A", "channel B", "channel G", "channel R", "channel mono.Y"}));
    expectLayers(encodeExr(key), 0, sheet);
    const Picture mono = with(old, {.exrLayer = "mono"});
    EXPECT_EQ(mono.channels, Channels::kGrey);
    expectLayers(encodeExr(mono), 0, sheet);
    ExrSheet alone = sheetOf(3, 3);
    add(alone, {"a.R", "a.G", "a.B"}, Imf::FLOAT);
    expectLayers(encodeExr(with(exrOf(alone), {.exrLayer = "a"})), 0, alone);
}

TEST(ExrChoice, ReadsThePartByNameOrNumber) {
    ExrSheet first = sheetOf(5, 5, "first"), second = sheetOf(6, 6, "2b"), third = sheetOf(7, 7, "1");
    for (ExrSheet* const sheet : {&first, &second, &third}) {
        add(*sheet, {"R", "G", "B"}, Imf::HALF);
    }
    add(second, {"spec.R", "spec.G", "spec.B"}, Imf::HALF);
    const std::vector<uint8_t> old = exrOf({first, second, third});
    EXPECT_EQ(with(old, {}).width, 5U);
    EXPECT_EQ(with(old, {.exrPart = "2b"}).width, 6U);
    EXPECT_EQ(with(old, {.exrPart = "3"}).width, 7U);
    EXPECT_EQ(with(old, {.exrPart = "1"}).width, 7U); // a name
    EXPECT_EQ(with(old, {.exrLayer = "spec"}).width, 6U);
    EXPECT_EQ(with(exrOf(first), {.exrPart = "1"}).width, 5U);
}

TEST(ExrChoice, RefusesWhatThereIsNot) {
    ExrSheet one = sheetOf(5, 5, "one"), two = sheetOf(6, 6, "two");
    add(one, {"R", "G", "B", "key.R", "key.G", "key.B"}, Imf::HALF);
    add(two, {"spec.R", "spec.G", "spec.B", "odd.R"}, Imf::HALF);
    const std::vector<uint8_t> file = exrOf({one, two});
    EXPECT_EQ(failureOf(file, {.exrLayer = "fill"}),
              "cannot read 'in.exr': it has no layer 'fill'; its layers are key, odd, spec");
    EXPECT_EQ(failureOf(file, {.exrLayer = "key", .exrPart = "two"}),
              "cannot read 'in.exr': it has no layer 'key'; its layers are odd, spec");
    EXPECT_EQ(failureOf(file, {.exrLayer = "odd"}), "cannot read 'in.exr': it has no channel odd.G, odd.B; "
                                                    "its channels are odd.R, spec.B, spec.G, spec.R");
    for (const std::string part : {"three", "0", "3", "-1", "1x", ""}) {
        EXPECT_EQ(failureOf(file, {.exrPart = part}), "cannot read 'in.exr': it has no part '" + part +
                                                          "'; its parts, from 1 to 2, are one, two");
    }
    EXPECT_NE(failureOf(file, {.exrPart = "two"}).find("--exr-layer chooses one of odd, spec"),
              std::string::npos);
}

TEST(ExrRest, NothingThatIsPassedOnLosesAnything) {
    ExrSheet sheet = sheetOf(8, 8);
    sheet.compression = Imf::PXR24_COMPRESSION;
    add(sheet, {"R", "G", "B", "mask"}, Imf::HALF);
    add(sheet, {"id"}, Imf::UINT);
    EXPECT_EQ(headerOf(encodeExr(with(exrOf(sheet), {}))).compression(), Imf::PXR24_COMPRESSION);
    add(sheet, {"Z"}, Imf::FLOAT);
    const Picture picture = with(exrOf(sheet), {});
    const std::vector<uint8_t> file = encodeExr(picture);
    EXPECT_EQ(headerOf(file).compression(), Imf::ZIP_COMPRESSION);
    EXPECT_TRUE(valuesIn(file, 0, "Z") == valuesIn(exrOf(sheet), 0, "Z"));
    for (const std::string name : {"pxr24", "b44", "b44a", "dwaa", "dwab"}) {
        try {
            encodeExr(picture, {.compression = name});
            ADD_FAILURE() << name;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.kind(), FailureKind::kUsage);
            EXPECT_EQ(failure.what(),
                      "cannot write with --compression " + name +
                          ", which loses something: channel Z of 'in.exr' is passed on as it is; "
                          "none, rle, zips, zip or piz lose nothing");
        }
    }
    for (const std::string name : {"none", "rle", "zips", "zip", "piz"}) {
        EXPECT_TRUE(valuesIn(encodeExr(picture, {.compression = name}), 0, "Z") ==
                    valuesIn(exrOf(sheet), 0, "Z"));
    }
}

TEST(ExrRest, DamageIsBorneAndNamesTheOldFile) {
    ExrSheet main = sheetOf(8, 8, "main"), more = sheetOf(8, 8, "more");
    add(main, {"R", "G", "B"}, Imf::HALF);
    add(main, {"Z"}, Imf::FLOAT);
    add(more, {"R", "G", "B"}, Imf::HALF);
    const std::vector<uint8_t> file = exrOf({main, more});
    const auto thereAndBack = [](std::span<const uint8_t> bytes, const std::string& name) {
        const Picture picture = decodeExr(bytes, name);
        encodeExr(picture);
        return picture;
    };
    expectWrongBytesBorne(thereAndBack, file, std::size_t{64} << 20);
    const std::vector<uint8_t> cut(file.begin(), file.end() - 20);
    const std::string text = refusalOf(thereAndBack, cut);
    EXPECT_NE(text.find("cannot read"), std::string::npos) << text;
    EXPECT_NE(text.find("it is cut short"), std::string::npos) << text;
}

TEST(ExrChoice, IsRefusedForOtherFormats) {
    const Picture picture = pictureWith(SampleType::kUint8, Channels::kGrey, 1, {1});
    for (const FileFormat format : {FileFormat::kPng, FileFormat::kTiff, FileFormat::kTga}) {
        const std::vector<uint8_t> bytes = encodePicture(format, picture);
        for (const DecodeOptions& options : {DecodeOptions{.exrLayer = "a"}, DecodeOptions{.exrPart = "1"}}) {
            try {
                decodePicture(format, bytes, "in", options);
                ADD_FAILURE();
            } catch (const Failure& failure) {
                EXPECT_EQ(failure.kind(), FailureKind::kUsage);
                EXPECT_EQ(std::string(failure.what()),
                          "cannot read 'in' with --exr-layer or --exr-part: it is not an OpenEXR file");
            }
        }
    }
}

} // namespace
} // namespace kovalune::test
