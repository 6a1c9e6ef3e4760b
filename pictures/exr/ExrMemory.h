// Files in memory for the OpenEXR library.
#pragma once

#include <IlmThreadPool.h>
#include <ImfIO.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kovalune::pictures {

/// In the library's messages, where a file would be named.
inline constexpr char kExrStreamName[] = "stream";

/// What the library says, without the file's name that it begins with.
inline std::string exrReason(const std::string& text) {
    std::string before(1, '"');
    before.append(kExrStreamName).append("\". ");
    const std::size_t at = text.rfind(before);
    return at == std::string::npos ? text : text.substr(at + before.size());
}

/// To be called before samples are read or written. The library makes its pool with the first task, and where there is no memory
/// for it then waits for that task for ever. Throws std::bad_alloc.
inline void makeExrPool() {
    static_cast<void>(IlmThread::ThreadPool::globalThreadPool());
}

class ExrInput : public Imf::IStream {
public:
    explicit ExrInput(std::span<const uint8_t> bytes) : Imf::IStream(kExrStreamName), bytes_(bytes) {}

    /// Whether bytes past the end were asked for.
    bool ended() const { return ended_; }

    bool read(char to[], int count) override {
        const uint64_t left = bytes_.size() - std::min<uint64_t>(position_, bytes_.size());
        if (count < 0 || static_cast<uint64_t>(count) > left) {
            ended_ = true;
            throw std::out_of_range("end of file");
        }
        if (count > 0) {
            std::memcpy(to, bytes_.data() + position_, static_cast<std::size_t>(count));
        }
        position_ += static_cast<uint64_t>(count);
        return position_ < bytes_.size();
    }
    uint64_t tellg() override { return position_; }
    void seekg(uint64_t position) override { position_ = position; }

private:
    std::span<const uint8_t> bytes_;
    uint64_t position_ = 0;
    bool ended_ = false;
};

class ExrOutput : public Imf::OStream {
public:
    ExrOutput() : Imf::OStream(kExrStreamName) {}

    void write(const char from[], int count) override {
        const std::size_t end = position_ + static_cast<std::size_t>(count);
        if (end > bytes_.capacity()) {
            bytes_.reserve(std::max(end, 2 * bytes_.capacity()));
        }
        if (end > bytes_.size()) {
            bytes_.resize(end);
        }
        if (count > 0) {
            std::memcpy(bytes_.data() + position_, from, static_cast<std::size_t>(count));
        }
        position_ = end;
    }
    uint64_t tellp() override { return position_; }
    void seekp(uint64_t position) override { position_ = static_cast<std::size_t>(position); }

    std::vector<uint8_t> takeBytes() { return std::move(bytes_); }

private:
    std::vector<uint8_t> bytes_;
    std::size_t position_ = 0;
};

} // namespace kovalune::pictures
