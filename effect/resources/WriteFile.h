// The end of each program that makes a resource: its bytes in a file.
#pragma once

#include <cstdint>
#include <fstream>
#include <iostream>
#include <span>

namespace kovalune {

/// The program's exit code: 0, or 1 with a message where the file cannot be written.
inline int writeFile(const char* path, std::span<const uint8_t> bytes) {
    std::ofstream file(path, std::ios::binary);
    for (const uint8_t byte : bytes) {
        file.put(static_cast<char>(byte));
    }
    file.close();
    if (!file) {
        std::cerr << "cannot write " << path << '\n';
        return 1;
    }
    return 0;
}

} // namespace kovalune
