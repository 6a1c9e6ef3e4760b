// A file for Windows, read as bytes: what it is for, what it exports and imports, its resources.
// Every read is checked against the file's end; damage is reported as std::runtime_error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kovalune::test {

using Bytes = std::vector<uint8_t>;

Bytes readFile(const std::string& path);

/// `count` bytes from `at` on.
std::span<const uint8_t> slice(std::span<const uint8_t> bytes, std::size_t at, std::size_t count);
uint16_t word16(std::span<const uint8_t> bytes, std::size_t at);
uint32_t word32(std::span<const uint8_t> bytes, std::size_t at);

struct PeSection {
    std::string name;
    uint32_t address;
    uint32_t size; ///< in memory or in the file, the larger
    uint32_t fileOffset;
};

struct PeResource {
    std::string type; ///< a named type, or "#" and its number
    std::string id;   ///< likewise
    uint32_t language;
    Bytes data;
};

class PeFile {
public:
    explicit PeFile(Bytes bytes);

    uint16_t machine() const { return word16(header_, 0); }
    uint32_t timestamp() const { return word32(header_, 4); }
    uint32_t symbolTable() const { return word32(header_, 8); }
    uint32_t symbolCount() const { return word32(header_, 12); }
    uint16_t characteristics() const { return word16(header_, 18); }
    /// Of how the library is loaded.
    uint16_t libraryCharacteristics() const { return word16(optional_, 70); }
    uint16_t magic() const { return word16(optional_, 0); }

    const std::vector<PeSection>& sections() const { return sections_; }

    struct Exports {
        uint32_t timestamp = 0;
        uint32_t functions = 0; ///< those without a name count too
        std::vector<std::string> names;
    };
    Exports exports() const;

    struct Import {
        std::string library;                ///< in lower case
        std::vector<std::string> functions; ///< a name, or "#" and its number
    };
    std::vector<Import> imports() const;

    /// The oldest Windows that loads the file: 501 is Windows XP, 600 Vista.
    int systemVersion() const { return word16(optional_, 48) * 100 + word16(optional_, 50); }

    bool hasDelayedImports() const { return directory(13).size != 0; }
    bool hasDebugDirectory() const { return directory(6).size != 0; }

    std::vector<PeResource> resources() const;

private:
    struct Directory {
        uint32_t address = 0;
        uint32_t size = 0;
    };
    Directory directory(std::size_t index) const;
    std::size_t fileOffset(uint32_t address) const;
    std::vector<std::string> functionsAt(uint32_t table) const;
    std::string textAt(uint32_t address) const;

    Bytes bytes_;
    std::span<const uint8_t> header_;
    std::span<const uint8_t> optional_;
    std::vector<PeSection> sections_;
};

} // namespace kovalune::test
