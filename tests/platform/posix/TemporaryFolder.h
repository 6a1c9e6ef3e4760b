// An empty folder for one test, removed with all it holds.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <stdlib.h>
#include <string>

namespace kovalune::platform {

class TemporaryFolder {
public:
    TemporaryFolder() : path_(testing::TempDir() + "platform-XXXXXX") {
        if (::mkdtemp(path_.data()) == nullptr) {
            ADD_FAILURE() << "no folder " << path_;
        }
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(file(name), std::ios::binary) << content;
        return file(name);
    }

    std::ptrdiff_t entries() const {
        return std::distance(std::filesystem::directory_iterator(path_),
                             std::filesystem::directory_iterator());
    }

private:
    std::string path_;
};

inline std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

} // namespace kovalune::platform
