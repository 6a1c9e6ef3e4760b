// The texts of a PNG file: kept byte for byte from PNG to PNG, and named where they are left out.

#include "tests/cli/ErrorCase.h"

#include <algorithm>
#include <zlib.h>

namespace kovalune::test {
namespace {

struct Chunk {
    std::string name;
    std::vector<uint8_t> data;

    friend bool operator==(const Chunk&, const Chunk&) = default;
};

constexpr std::size_t kSignatureBytes = 8;
constexpr std::size_t kChunkBytes = 12; // beside its data

uint32_t numberAt(const std::vector<uint8_t>& bytes, std::size_t place) {
    return uint32_t{bytes.at(place)} << 24 | uint32_t{bytes.at(place + 1)} << 16 |
           uint32_t{bytes.at(place + 2)} << 8 | bytes.at(place + 3);
}

void append(std::vector<uint8_t>& bytes, uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<uint8_t>(number >> shift));
    }
}

std::vector<uint8_t> inFile(const Chunk& chunk) {
    std::vector<uint8_t> bytes;
    append(bytes, static_cast<uint32_t>(chunk.data.size()));
    bytes.insert(bytes.end(), chunk.name.begin(), chunk.name.end());
    bytes.insert(bytes.end(), chunk.data.begin(), chunk.data.end());
    append(bytes, static_cast<uint32_t>(crc32(0, bytes.data() + 4, static_cast<uInt>(bytes.size() - 4))));
    return bytes;
}

std::vector<uint8_t> inFile(const std::vector<Chunk>& chunks) {
    std::vector<uint8_t> bytes;
    for (const Chunk& chunk : chunks) {
        const std::vector<uint8_t> added = inFile(chunk);
        bytes.insert(bytes.end(), added.begin(), added.end());
    }
    return bytes;
}

Chunk text(const std::string& name, const std::string& data) {
    return {name, {data.begin(), data.end()}};
}

/// Those of the file that hold texts, in order.
std::vector<Chunk> textsOf(const std::filesystem::path& file) {
    const std::vector<uint8_t> bytes = bytesOf(file);
    std::vector<Chunk> texts;
    for (std::size_t at = kSignatureBytes; at < bytes.size(); at += numberAt(bytes, at) + kChunkBytes) {
        const auto data = bytes.begin() + static_cast<std::ptrdiff_t>(at) + 8;
        const std::string name(data - 4, data);
        if (name.ends_with("Xt") || name == "iTXt") {
            texts.push_back({name, {data, data + numberAt(bytes, at)}});
        }
    }
    return texts;
}

using namespace std::string_literals;

class PngTexts : public ErrorCase {
protected:
    /// Before the samples, after the header, and after them.
    void write(const std::vector<Chunk>& before, const std::vector<Chunk>& after) const {
        constexpr std::size_t kHeaderBytes = 25;
        std::vector<uint8_t> bytes = bytesOf(folder_ / "in.png");
        const std::vector<uint8_t> first = inFile(before), last = inFile(after);
        bytes.insert(bytes.end() - kChunkBytes, last.begin(), last.end());
        bytes.insert(bytes.begin() + kSignatureBytes + kHeaderBytes, first.begin(), first.end());
        writeBytes(folder_ / "in.png", bytes);
    }

    CommandOutcome run(const std::vector<std::string>& words) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }
};

TEST_F(PngTexts, AreKeptByteForByteFromPngToPng) {
    std::vector<Chunk> before = {text("tEXt", "Title\0A girl"s), text("tEXt", "Title\0once more"s),
                                 text("zTXt", "Comment\0\0not really packed"s)};
    std::vector<Chunk> after = {text("iTXt", "Author\0\0\0ja\0\xe4\xbd\x9c\0\xe7\xb5\xb5"s),
                                text("tEXt", "no keyword"s)};
    write(before, after);
    std::vector<Chunk> all = before;
    all.insert(all.end(), after.begin(), after.end());
    ASSERT_EQ(textsOf(folder_ / "in.png"), all);
    for (const char* const command : {"render", "smooth"}) {
        EXPECT_TRUE(run({command, "in.png", "-o", "out.png"}).ok());
        EXPECT_EQ(textsOf(folder_ / "out.png"), all);
        EXPECT_EQ(readPngFile(folder_ / "out.png").width, 12U);
    }
}

TEST_F(PngTexts, AreKeptHoweverManyAndLongTheyAre) {
    std::vector<Chunk> many;
    for (int number = 0; number < 1500; ++number) {
        many.push_back(text("tEXt", "Number\0"s + std::to_string(number)));
    }
    many.push_back(text("tEXt", "Long\0"s + std::string(9000000, 'x')));
    write({}, many);
    EXPECT_TRUE(run({"smooth", "in.png", "-o", "out.png"}).ok());
    EXPECT_TRUE(textsOf(folder_ / "out.png") == many);
}

/// Each of these numbers of chunks would take minutes if one more chunk cost a look at all before it.
constexpr int kVeryMany = 200000;

TEST_F(PngTexts, AreKeptInOrderWhereThereAreVeryMany) {
    std::vector<Chunk> before, after;
    for (int number = 0; number < kVeryMany; ++number) {
        (number % 2 == 0 ? before : after).push_back(text("tEXt", std::to_string(number) + '\0'));
    }
    write(before, after);
    before.insert(before.end(), after.begin(), after.end());
    EXPECT_TRUE(run({"smooth", "in.png", "-o", "out.png"}).ok());
    EXPECT_TRUE(textsOf(folder_ / "out.png") == before);
    EXPECT_EQ(run({"smooth", "in.png", "-o", "out.tga"}).err,
              "kovalune: left out of 'in.png': texts (0, 2, 4, 6, 8 and 199995 more)\n");
}

TEST_F(PngTexts, ArePassedByOtherChunksHoweverManyTheyAre) {
    std::vector<Chunk> many(kVeryMany, text("gAMA", "\0\1\x86\xa0"s));
    many.resize(2 * kVeryMany, text("prVt", "x"));
    many.push_back(text("gAMA", "\0\0\0\1"s));
    many.push_back(text("tEXt", "Title\0A girl"s));
    write(many, many);
    EXPECT_TRUE(run({"smooth", "in.png", "-o", "out.png"}).ok());
    EXPECT_TRUE(textsOf(folder_ / "out.png") == std::vector(2, many.back()));
    const PngPicture written = readPngFile(folder_ / "out.png");
    ASSERT_EQ(written.notes.size(), 1U);
    EXPECT_EQ(written.notes[0].first, "gAMA");
    EXPECT_EQ(written.notes[0].second, many.front().data);
}

TEST_F(PngTexts, StandBehindTheHeader) {
    std::vector<uint8_t> bytes = bytesOf(folder_ / "in.png");
    const std::vector<uint8_t> added = inFile(text("tEXt", "Title\0A girl"s));
    bytes.insert(bytes.begin() + kSignatureBytes, added.begin(), added.end());
    writeBytes(folder_ / "in.png", bytes);
    expectFailure({"smooth", "in.png", "-o", "out.png"}, 3,
                  {"cannot read 'in.png': it is damaged: tEXt: out of place\n"});
}

TEST_F(PngTexts, AreNamedWhereTheOtherFormatHasNoPlaceForThem) {
    write({text("tEXt", "Title\0A girl"s), text("tEXt", "Title\0once more"s)},
          {text("iTXt", "Auteur \xe9\0\0\0\0\0x"s), text("tEXt", "\x1b[2J\0x"s)});
    for (const char* const output : {"out.tif", "out.exr", "out.tga"}) {
        for (const char* const command : {"render", "smooth"}) {
            const CommandOutcome outcome = run({command, "in.png", "-o", output});
            EXPECT_EQ(outcome.exitCode, 0);
            EXPECT_EQ(outcome.err,
                      "kovalune: left out of 'in.png': texts (Title, Auteur \xc3\xa9, unnamed)\n");
        }
    }
}

TEST_F(PngTexts, AreNamedByTheFirstFewOfMany) {
    std::vector<Chunk> many;
    for (char letter = 'a'; letter < 'j'; ++letter) {
        many.push_back(text("tEXt", std::string(1, letter) + '\0'));
    }
    write(many, {});
    EXPECT_EQ(run({"smooth", "in.png", "-o", "out.tga"}).err,
              "kovalune: left out of 'in.png': texts (a, b, c, d, e and 4 more)\n");
}

} // namespace
} // namespace kovalune::test
