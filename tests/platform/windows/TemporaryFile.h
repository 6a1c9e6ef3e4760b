// A file of its own for a test, removed at the end; empty as it is made.
#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <windows.h>

namespace kovalune::test {
using namespace platform;

class TemporaryFile {
public:
    TemporaryFile() {
        char folder[MAX_PATH] = {};
        char path[MAX_PATH] = {};
        if (GetTempPathA(MAX_PATH, folder) == 0 || GetTempFileNameA(folder, "kov", 0, path) == 0) {
            throw std::runtime_error("no temporary file");
        }
        path_ = path;
    }
    ~TemporaryFile() { DeleteFileA(path_.c_str()); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const char* path() const { return path_.c_str(); }

    void write(const std::string& text) const { std::ofstream(path_, std::ios::binary) << text; }
    std::string read() const {
        std::ifstream file(path_, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

private:
    std::string path_;
};

} // namespace kovalune::test
