// An open file that closes itself, and bounded reading, for the POSIX side of the platform calls.
#pragma once

#include <cstddef>
#include <string>

namespace kovalune::platform {

class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { close(); }

    bool isOpen() const noexcept { return descriptor_ >= 0; }
    int get() const noexcept { return descriptor_; }
    // False if the system reports that something written may be lost.
    bool close() noexcept;

private:
    int descriptor_;
};

// Opens for reading without ever waiting, as opening a pipe would; errno tells why it is not open.
FileDescriptor openForReading(const char* path) noexcept;

// Puts what the file holds from here on into `content`, at most `limit` bytes of it; false if reading fails.
bool readUpTo(const FileDescriptor& file, std::size_t limit, std::string& content);

// Writes all of it; false if that fails.
bool writeAll(const FileDescriptor& file, const std::string& content) noexcept;

} // namespace kovalune::platform
