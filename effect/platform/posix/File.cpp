#include "effect/platform/posix/File.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace kovalune::platform {

bool FileDescriptor::close() noexcept {
    if (descriptor_ < 0) {
        return true;
    }
    // Not repeated after EINTR: the descriptor is gone then, and its number may be another thread's by now.
    const int result = ::close(descriptor_);
    descriptor_ = -1;
    return result == 0 || errno == EINTR;
}

FileDescriptor openForReading(const char* path) noexcept {
    return FileDescriptor(::open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
}

bool readUpTo(const FileDescriptor& file, std::size_t limit, std::string& content) {
    content.clear();
    std::array<char, 16384> block{};
    while (content.size() < limit) {
        const ssize_t count =
            ::read(file.get(), block.data(), std::min(block.size(), limit - content.size()));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return count == 0;
        }
        content.append(block.data(), static_cast<std::size_t>(count));
    }
    return true;
}

bool writeAll(const FileDescriptor& file, const std::string& content) noexcept {
    std::size_t written = 0;
    while (written < content.size()) {
        const ssize_t count = ::write(file.get(), content.data() + written, content.size() - written);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        written += static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace kovalune::platform
