#include "cli/PngFile.h"

#include "cli/Failure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

namespace kovalune {

namespace {

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

[[noreturn]] void failReading(const std::filesystem::path& file, const std::string& reason) {
    throw Failure(ExitCode::File, "cannot read " + inQuotes(file.string()) + ": " + reason);
}

// Reads up to `count` more bytes.
void appendBytes(std::vector<std::uint8_t>& bytes, std::size_t count, std::FILE* source,
                 const std::filesystem::path& file) {
    const std::size_t before = bytes.size();
    bytes.resize(before + count);
    const std::size_t taken = std::fread(bytes.data() + before, 1, count, source);
    const int error = errno;
    bytes.resize(before + taken);
    if (std::ferror(source) != 0)
        failReading(file, systemReason(error));
}

// Stops behind the signature of anything but a PNG, which may be endless.
std::vector<std::uint8_t> readBytes(const std::filesystem::path& file) {
    constexpr std::size_t kBlock = std::size_t{1} << 20;
    const OpenFile source(std::fopen(file.string().c_str(), "rb"));
    if (!source)
        failReading(file, systemReason(errno));
    std::vector<std::uint8_t> bytes;
    appendBytes(bytes, kSignature.size(), source.get(), file);
    if (!std::equal(bytes.begin(), bytes.end(), kSignature.begin(), kSignature.end()))
        failReading(file, bytes.empty() ? "it is empty" : "it is not a PNG file");
    while (std::feof(source.get()) == 0)
        appendBytes(bytes, kBlock, source.get(), file);
    return bytes;
}

} // namespace

Picture readPng(const std::filesystem::path& file) {
    return decodePng(readBytes(file), file.string());
}

} // namespace kovalune
