#include "pictures/tiff/TiffMemory.h"

#include "pictures/LackOfMemory.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>
#include <new>

namespace kovalune::pictures {

namespace {

TiffMemory& memoryOf(thandle_t handle) {
    return *static_cast<TiffMemory*>(handle);
}

uint64_t sizeOf(const TiffMemory& memory) {
    return std::max(memory.source.size(), memory.target.size());
}

tmsize_t onRead(thandle_t handle, void* to, tmsize_t count) noexcept {
    TiffMemory& memory = memoryOf(handle);
    const auto bytes = memory.source.empty() ? std::span<const uint8_t>(memory.target) : memory.source;
    const uint64_t left = bytes.size() - std::min<uint64_t>(memory.position, bytes.size());
    const uint64_t taken = std::min(left, static_cast<uint64_t>(std::max<tmsize_t>(count, 0)));
    if (taken > 0) {
        std::memcpy(to, bytes.data() + memory.position, static_cast<std::size_t>(taken));
    }
    memory.position += taken;
    if (static_cast<tmsize_t>(taken) != count) {
        memory.ended = true;
    }
    return static_cast<tmsize_t>(taken);
}

tmsize_t onWrite(thandle_t handle, void* from, tmsize_t count) noexcept {
    TiffMemory& memory = memoryOf(handle);
    if (!memory.source.empty() || count < 0) {
        return 0;
    }
    try {
        const auto end = static_cast<std::size_t>(memory.position) + static_cast<std::size_t>(count);
        if (end > memory.target.capacity()) {
            memory.target.reserve(std::max(end, memory.target.capacity() * 2));
        }
        if (end > memory.target.size()) {
            memory.target.resize(end);
        }
    } catch (const std::exception&) {
        memory.outOfMemory = true;
        return 0;
    }
    if (count > 0) {
        std::memcpy(memory.target.data() + memory.position, from, static_cast<std::size_t>(count));
    }
    memory.position += static_cast<uint64_t>(count);
    return count;
}

toff_t onSeek(thandle_t handle, toff_t offset, int whence) noexcept {
    TiffMemory& memory = memoryOf(handle);
    if (whence == SEEK_CUR) {
        offset += memory.position;
    } else if (whence == SEEK_END) {
        offset += sizeOf(memory);
    }
    memory.position = offset;
    return offset;
}

int onClose(thandle_t) noexcept {
    return 0;
}

toff_t onSize(thandle_t handle) noexcept {
    return sizeOf(memoryOf(handle));
}

void keepFirst(char (&text)[256], const char* format, std::va_list values) {
    if (text[0] == 0) {
        std::vsnprintf(text, sizeof text, format, values);
    }
}

/// A 1 keeps the library from handing the text to the handlers of the whole process.
[[gnu::format(printf, 4, 0)]] int onError(TIFF*, void* handle, const char*, const char* format,
                                          std::va_list values) noexcept {
    TiffMemory& memory = memoryOf(handle);
    const bool isFirst = memory.error[0] == 0;
    keepFirst(memory.error, format, values);
    if (isFirst && tellsOfMemory(memory.error)) {
        memory.outOfMemory = true;
    }
    return 1;
}

[[gnu::format(printf, 4, 0)]] int onWarning(TIFF*, void* handle, const char*, const char* format,
                                            std::va_list values) noexcept {
    keepFirst(memoryOf(handle).warning, format, values);
    return 1;
}

struct FreeOptions {
    void operator()(TIFFOpenOptions* options) const noexcept { TIFFOpenOptionsFree(options); }
};

} // namespace

OpenTiff openTiff(TiffMemory& memory, const char* mode, std::size_t mostBytes) {
    const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
    if (!options) {
        throw std::bad_alloc();
    }
    constexpr std::size_t kMost = std::numeric_limits<tmsize_t>::max();
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(std::min(mostBytes, kMost)));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), onError, &memory);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), onWarning, &memory);
    return OpenTiff(TIFFClientOpenExt("TIFF", mode, &memory, onRead, onWrite, onSeek, onClose, onSize,
                                      nullptr, nullptr, options.get()));
}

} // namespace kovalune::pictures
