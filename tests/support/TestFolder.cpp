#include "tests/support/TestFolder.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kovalune::test {

TestFolder::TestFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kovalune-cli-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no folder for the test");
    }
    path_ = name;
}

TestFolder::~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> TestFolder::names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<uint8_t> bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void writeBytes(const std::filesystem::path& file, const std::vector<uint8_t>& bytes) {
    std::ofstream stream(file, std::ios::binary);
    for (const uint8_t byte : bytes) {
        stream.put(static_cast<char>(byte));
    }
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

} // namespace kovalune::test
