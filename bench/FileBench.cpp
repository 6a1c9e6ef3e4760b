// Picture files in memory, to and from the pictures that they hold, and all the way between a file and the effect. Beside
// PNG rows are those of its bare library on the same bytes, without anything of ours.

#include "bench/BenchScene.h"

#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <png.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace kovalune::bench {
namespace {

using Bytes = std::vector<uint8_t>;
using pictures::FileFormat;
using pictures::Picture;
using pictures::SampleType;

Bytes exampleBytes() {
    std::ifstream file(KOVALUNE_EXAMPLES "/cel1.png", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The drawing with samples of this type.
const Picture& drawingOf(SampleType type) {
    static std::map<SampleType, Picture> made;
    const auto found = made.find(type);
    if (found != made.end()) {
        return found->second;
    }
    const Picture source = pictures::readPicture(KOVALUNE_EXAMPLES "/cel1.png");
    const host::Image image = pictures::imageOf(source, pictures::workingFormat(type));
    return made.emplace(type, pictures::pictureOf(image, image, source, {type, source.alphaKind}))
        .first->second;
}

/// The drawing's own file, and what is written of it in other forms.
const Bytes& fileOf(FileFormat format, SampleType type) {
    static std::map<std::pair<FileFormat, SampleType>, Bytes> made = {
        {{FileFormat::kPng, SampleType::kUint8}, exampleBytes()}};
    const auto key = std::pair(format, type);
    const auto found = made.find(key);
    return found != made.end()
               ? found->second
               : made.emplace(key, pictures::encodePicture(format, drawingOf(type))).first->second;
}

void reportFile(benchmark::State& state, std::size_t bytes) {
    report(state, kDrawing);
    state.counters["KB"] = static_cast<double>(bytes) / 1e3;
}

template <FileFormat format, SampleType type>
void readFile(benchmark::State& state) {
    const Bytes& bytes = fileOf(format, type);
    for (auto step : state) {
        benchmark::DoNotOptimize(pictures::decodePicture(format, bytes, "drawing"));
    }
    reportFile(state, bytes.size());
}

/// Argument: the level of PNG files.
template <FileFormat format, SampleType type>
void writeFile(benchmark::State& state) {
    const Picture& picture = drawingOf(type);
    const pictures::EncodeOptions options{.pngLevel = static_cast<int>(state.range(0))};
    std::size_t bytes = 0;
    for (auto step : state) {
        bytes = pictures::encodePicture(format, picture, options).size();
    }
    reportFile(state, bytes);
}

/// What a command does to get a picture from its file to the effect.
void readToTheEffect(benchmark::State& state) {
    const std::filesystem::path file = KOVALUNE_EXAMPLES "/cel1.png";
    for (auto step : state) {
        const Picture picture = pictures::readPicture(file);
        benchmark::DoNotOptimize(pictures::imageOf(picture, PF_PixelFormat_ARGB32));
    }
    reportFile(state, std::filesystem::file_size(file));
}

/// The way back, but for the disk. A part of the drawing is another one than before.
void writeFromTheEffect(benchmark::State& state) {
    const Picture& source = drawingOf(SampleType::kUint8);
    const host::Image image = pictures::imageOf(source, PF_PixelFormat_ARGB32);
    host::Image result = image;
    for (A_long y = kHeight / 4; y < kHeight / 2; ++y) {
        for (A_long x = kWidth / 4; x < kWidth / 2; ++x) {
            result.at<PF_Pixel>(x, y).blue ^= 1;
        }
    }
    std::size_t bytes = 0;
    for (auto step : state) {
        const Picture picture =
            pictures::pictureOf(result, image, source, {SampleType::kUint8, source.alphaKind});
        bytes = pictures::encodePicture(FileFormat::kPng, picture).size();
    }
    reportFile(state, bytes);
}

[[noreturn]] void failBare(png_structp, png_const_charp text) {
    throw std::runtime_error(text);
}

struct Source {
    const uint8_t* next;
};

Bytes bareRead(const Bytes& file) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, failBare, nullptr);
    png_infop info = png_create_info_struct(png);
    Source source{file.data()};
    png_set_read_fn(png, &source, [](png_structp from, png_bytep to, std::size_t count) {
        auto* const bytes = static_cast<Source*>(png_get_io_ptr(from));
        std::memcpy(to, bytes->next, count);
        bytes->next += count;
    });
    png_read_info(png, info);
    const std::size_t rowBytes = png_get_rowbytes(png, info);
    Bytes samples(rowBytes * png_get_image_height(png, info));
    for (std::size_t at = 0; at < samples.size(); at += rowBytes) {
        png_read_row(png, samples.data() + at, nullptr);
    }
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return samples;
}

Bytes bareWrite(const Picture& picture, int level) {
    Bytes file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, failBare, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &file,
        [](png_structp to, png_bytep from, std::size_t count) {
            auto* const bytes = static_cast<Bytes*>(png_get_io_ptr(to));
            bytes->insert(bytes->end(), from, from + count);
        },
        nullptr);
    png_set_IHDR(png, info, picture.width, picture.height, 8, PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, level);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_write_info(png, info);
    for (std::size_t y = 0; y < picture.height; ++y) {
        png_write_row(png, picture.samples.data() + y * picture.rowBytes());
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

void libpngRead(benchmark::State& state) {
    const Bytes& bytes = fileOf(FileFormat::kPng, SampleType::kUint8);
    for (auto step : state) {
        benchmark::DoNotOptimize(bareRead(bytes));
    }
    reportFile(state, bytes.size());
}

/// Argument: level.
void libpngWrite(benchmark::State& state) {
    const Picture& picture = drawingOf(SampleType::kUint8);
    std::size_t bytes = 0;
    for (auto step : state) {
        bytes = bareWrite(picture, static_cast<int>(state.range(0))).size();
    }
    reportFile(state, bytes);
}

void asUsual(benchmark::internal::Benchmark* bench) {
    bench->UseRealTime()->Unit(benchmark::kMillisecond);
}

void atUsualLevel(benchmark::internal::Benchmark* bench) {
    bench->Arg(pictures::kUsualPngLevel)->UseRealTime()->Unit(benchmark::kMillisecond);
}

void atEachLevel(benchmark::internal::Benchmark* bench) {
    bench->DenseRange(0, pictures::kHighestPngLevel)->UseRealTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(libpngRead)->Name("libpngRead8")->Apply(asUsual);
BENCHMARK(readFile<FileFormat::kPng, SampleType::kUint8>)->Name("readPng8")->Apply(asUsual);
BENCHMARK(readToTheEffect)->Name("readPng8 to the effect")->Apply(asUsual);
BENCHMARK(libpngWrite)->Name("libpngWrite8")->Apply(atUsualLevel);
BENCHMARK(writeFromTheEffect)->Name("writePng8 from the effect")->Apply(asUsual);
BENCHMARK(writeFile<FileFormat::kPng, SampleType::kUint8>)->Name("writePng8")->Apply(atEachLevel);
BENCHMARK(readFile<FileFormat::kPng, SampleType::kUint16>)->Name("readPng16")->Apply(asUsual);
BENCHMARK(writeFile<FileFormat::kPng, SampleType::kUint16>)->Name("writePng16")->Apply(atUsualLevel);
BENCHMARK(readFile<FileFormat::kTiff, SampleType::kUint8>)->Name("readTiff8")->Apply(asUsual);
BENCHMARK(writeFile<FileFormat::kTiff, SampleType::kUint8>)->Name("writeTiff8")->Apply(atUsualLevel);
BENCHMARK(readFile<FileFormat::kTiff, SampleType::kFloat>)->Name("readTiff32")->Apply(asUsual);
BENCHMARK(writeFile<FileFormat::kTiff, SampleType::kFloat>)->Name("writeTiff32")->Apply(atUsualLevel);
BENCHMARK(readFile<FileFormat::kExr, SampleType::kHalf>)->Name("readExr16")->Apply(asUsual);
BENCHMARK(writeFile<FileFormat::kExr, SampleType::kHalf>)->Name("writeExr16")->Apply(atUsualLevel);
BENCHMARK(readFile<FileFormat::kTga, SampleType::kUint8>)->Name("readTga8")->Apply(asUsual);
BENCHMARK(writeFile<FileFormat::kTga, SampleType::kUint8>)->Name("writeTga8")->Apply(atUsualLevel);

} // namespace
} // namespace kovalune::bench
