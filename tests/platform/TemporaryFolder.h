// An empty folder for one test, removed with all it holds. Names below it may be written with '/'; paths come in the
// system's own form.
#pragma once

#include "effect/platform/Platform.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <sstream>
#include <string>

namespace kovalune::test {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device number;
        for (int attempt = 0; attempt < 100; ++attempt) {
            path_ = testing::TempDir() + "platform-" + std::to_string(number());
            std::error_code ignored;
            if (std::filesystem::create_directory(path_, ignored)) {
                return;
            }
        }
        ADD_FAILURE() << "no folder " << path_;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::string& path() const { return path_; }
    std::string file(std::string name) const {
        std::replace(name.begin(), name.end(), '/', platform::kPathSeparator);
        return path_ + platform::kPathSeparator + name;
    }
    /// A path below this folder of so many bytes in all, through folders with names of at most `nameBytes`.
    std::string fileOfLength(std::size_t bytes, std::size_t nameBytes = 50) const {
        std::string path = path_;
        while (path.size() < bytes) {
            const std::size_t left = bytes - path.size() - 1;
            // Two are left for the last name where a full one would leave nothing but a separator.
            const std::size_t name = left == nameBytes + 1 ? nameBytes - 1 : std::min(left, nameBytes);
            path += platform::kPathSeparator + std::string(name, 'n');
        }
        return path;
    }

    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(file(name), std::ios::binary) << content;
        return file(name);
    }

    std::ptrdiff_t entries() const {
        return std::distance(std::filesystem::directory_iterator(path_),
                             std::filesystem::directory_iterator());
    }
    /// With those in the folders below.
    std::ptrdiff_t allEntries() const {
        return std::distance(std::filesystem::recursive_directory_iterator(path_),
                             std::filesystem::recursive_directory_iterator());
    }

private:
    std::string path_;
};

inline std::string contentOf(const std::filesystem::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

} // namespace kovalune::test
