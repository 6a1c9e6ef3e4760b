#include "pictures/FileBytes.h"

#include "pictures/ReadFailure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <sys/stat.h>

namespace kovalune::pictures {

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const noexcept {
        if (file != stdin) {
            std::fclose(file);
        }
    }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

/// Of an ordinary file; 0 where only reading tells.
std::size_t knownSize(std::FILE* source) {
    struct stat status {};
    const bool known = ::fstat(::fileno(source), &status) == 0 && S_ISREG(status.st_mode);
    return known && status.st_size > 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

/// Reads up to `count` more bytes.
void appendBytes(std::vector<uint8_t>& bytes, std::size_t count, std::FILE* source,
                 const std::filesystem::path& file) {
    const std::size_t before = bytes.size();
    bytes.resize(before + count);
    const std::size_t taken = std::fread(bytes.data() + before, 1, count, source);
    const int error = errno;
    bytes.resize(before + taken);
    if (std::ferror(source) != 0) {
        failReading(readName(file), text::systemReason(error));
    }
}

/// Asks for one byte more; stands where it stood if there is one.
bool atEnd(std::FILE* source) {
    const int next = std::fgetc(source);
    return next == EOF || std::ungetc(next, source) == EOF;
}

} // namespace

std::string readName(const std::filesystem::path& file) {
    return file == kStream ? "standard input" : file.string();
}

std::vector<uint8_t> fileBytes(const std::filesystem::path& file, std::size_t count,
                               const std::function<void(std::span<const uint8_t>)>& checkBeginning) {
    constexpr std::size_t kBlock = std::size_t{1} << 20;
    const OpenFile source(file == kStream ? stdin : std::fopen(file.string().c_str(), "rb"));
    if (!source) {
        failReading(readName(file), text::systemReason(errno));
    }
    std::vector<uint8_t> bytes;
    appendBytes(bytes, count, source.get(), file);
    checkBeginning(bytes);
    const std::size_t size = knownSize(source.get());
    bytes.reserve(size);
    while (!atEnd(source.get())) {
        const std::size_t left = size > bytes.size() ? size - bytes.size() : kBlock;
        appendBytes(bytes, std::min(left, kBlock), source.get(), file);
    }
    if (std::ferror(source.get()) != 0) {
        failReading(readName(file), text::systemReason(errno));
    }
    return bytes;
}

} // namespace kovalune::pictures
