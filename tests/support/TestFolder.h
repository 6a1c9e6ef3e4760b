// A folder of a test's own, removed with all that is in it at the end of the test.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace kovalune::test {

class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    /// The names in it, sorted.
    std::vector<std::string> names() const;

private:
    std::filesystem::path path_;
};

std::vector<uint8_t> bytesOf(const std::filesystem::path& file);
void writeBytes(const std::filesystem::path& file, const std::vector<uint8_t>& bytes);

} // namespace kovalune::test
