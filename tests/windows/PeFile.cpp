#include "tests/windows/PeFile.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kovalune::test {
namespace {

constexpr std::size_t kHeaderBytes = 20;
constexpr std::size_t kSectionBytes = 40;
constexpr std::size_t kImportBytes = 20;
constexpr uint16_t kMagic32 = 0x10B;
constexpr uint16_t kMagic64 = 0x20B;
constexpr uint32_t kHighBit = 0x80000000; // a name instead of a number, a directory instead of data

/// The tree of resources; offsets count from its start.
class ResourceTree {
public:
    ResourceTree(std::span<const uint8_t> bytes, std::size_t root) : bytes_(bytes), root_(root) {}

    struct Entry {
        std::string name;
        uint32_t target;
    };

    std::vector<Entry> entries(uint32_t directory) const {
        const std::size_t at = root_ + (directory & ~kHighBit);
        const std::size_t count = std::size_t{word16(bytes_, at + 12)} + word16(bytes_, at + 14);
        std::vector<Entry> result;
        for (std::size_t i = 0; i < count; ++i) {
            result.push_back({nameOf(word32(bytes_, at + 16 + 8 * i)), word32(bytes_, at + 16 + 8 * i + 4)});
        }
        return result;
    }

    struct Leaf {
        uint32_t address;
        uint32_t size;
    };
    Leaf leaf(uint32_t target) const {
        if ((target & kHighBit) != 0) {
            throw std::runtime_error("a resource lies deeper than its language");
        }
        return {word32(bytes_, root_ + target), word32(bytes_, root_ + target + 4)};
    }

private:
    std::string nameOf(uint32_t name) const {
        if ((name & kHighBit) == 0) {
            return '#' + std::to_string(name);
        }
        const std::size_t at = root_ + (name & ~kHighBit);
        std::string text;
        for (std::size_t i = 0; i < word16(bytes_, at); ++i) {
            const uint16_t letter = word16(bytes_, at + 2 + 2 * i);
            text.push_back(letter < 128 ? static_cast<char>(letter) : '?');
        }
        return text;
    }

    std::span<const uint8_t> bytes_;
    std::size_t root_;
};

} // namespace

Bytes readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

std::span<const uint8_t> slice(std::span<const uint8_t> bytes, std::size_t at, std::size_t count) {
    if (at > bytes.size() || count > bytes.size() - at) {
        throw std::runtime_error("a read beyond the end, at " + std::to_string(at));
    }
    return bytes.subspan(at, count);
}

uint16_t word16(std::span<const uint8_t> bytes, std::size_t at) {
    const auto part = slice(bytes, at, 2);
    return static_cast<uint16_t>(part[0] | part[1] << 8);
}

uint32_t word32(std::span<const uint8_t> bytes, std::size_t at) {
    return uint32_t{word16(bytes, at)} | uint32_t{word16(bytes, at + 2)} << 16;
}

PeFile::PeFile(Bytes bytes) : bytes_(std::move(bytes)) {
    const std::size_t start = word32(bytes_, 0x3C);
    if (word16(bytes_, 0) != 0x5A4D || word32(bytes_, start) != 0x4550) {
        throw std::runtime_error("no file for Windows");
    }
    header_ = slice(bytes_, start + 4, kHeaderBytes);
    optional_ = slice(bytes_, start + 4 + kHeaderBytes, word16(header_, 16));
    if (magic() != kMagic32 && magic() != kMagic64) {
        throw std::runtime_error("an unknown kind of file");
    }
    const std::size_t table = start + 4 + kHeaderBytes + optional_.size();
    for (std::size_t i = 0; i < word16(header_, 2); ++i) {
        const auto section = slice(bytes_, table + i * kSectionBytes, kSectionBytes);
        const std::string name(section.begin(), std::find(section.begin(), section.begin() + 8, 0));
        sections_.push_back({name, word32(section, 12), std::max(word32(section, 8), word32(section, 16)),
                             word32(section, 20)});
    }
}

PeFile::Directory PeFile::directory(std::size_t index) const {
    const std::size_t count = magic() == kMagic32 ? 92 : 108;
    if (index >= word32(optional_, count)) {
        return {};
    }
    return {word32(optional_, count + 4 + 8 * index), word32(optional_, count + 8 + 8 * index)};
}

std::size_t PeFile::fileOffset(uint32_t address) const {
    for (const PeSection& section : sections_) {
        if (address >= section.address && address - section.address < section.size) {
            return std::size_t{section.fileOffset} + (address - section.address);
        }
    }
    throw std::runtime_error("an address outside all sections");
}

std::string PeFile::textAt(uint32_t address) const {
    std::string text;
    for (std::size_t at = fileOffset(address); slice(bytes_, at, 1)[0] != 0; ++at) {
        text.push_back(static_cast<char>(bytes_[at]));
    }
    return text;
}

PeFile::Exports PeFile::exports() const {
    const std::size_t at = fileOffset(directory(0).address);
    Exports result;
    result.timestamp = word32(bytes_, at + 4);
    result.functions = word32(bytes_, at + 20);
    const std::size_t names = fileOffset(word32(bytes_, at + 32));
    for (std::size_t i = 0; i < word32(bytes_, at + 24); ++i) {
        result.names.push_back(textAt(word32(bytes_, names + 4 * i)));
    }
    return result;
}

std::vector<PeFile::Import> PeFile::imports() const {
    std::vector<Import> result;
    for (std::size_t at = fileOffset(directory(1).address); word32(bytes_, at + 12) != 0;
         at += kImportBytes) {
        std::string name = textAt(word32(bytes_, at + 12));
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        const uint32_t unbound = word32(bytes_, at);
        result.push_back({name, functionsAt(unbound != 0 ? unbound : word32(bytes_, at + 16))});
    }
    return result;
}

std::vector<std::string> PeFile::functionsAt(uint32_t table) const {
    const std::size_t entryBytes = magic() == kMagic32 ? 4 : 8;
    std::vector<std::string> names;
    for (std::size_t at = fileOffset(table);
         word32(bytes_, at) != 0 || word32(bytes_, at + entryBytes - 4) != 0; at += entryBytes) {
        const uint32_t entry = word32(bytes_, at);
        const bool isNumber = (word32(bytes_, at + entryBytes - 4) & kHighBit) != 0;
        // A hint of two bytes stands before the name.
        names.push_back(isNumber ? '#' + std::to_string(entry & 0xFFFF) : textAt(entry + 2));
    }
    return names;
}

std::vector<PeResource> PeFile::resources() const {
    std::vector<PeResource> result;
    if (directory(2).size == 0) {
        return result;
    }
    const ResourceTree tree(bytes_, fileOffset(directory(2).address));
    for (const auto& type : tree.entries(0)) {
        for (const auto& id : tree.entries(type.target)) {
            for (const auto& language : tree.entries(id.target)) {
                const ResourceTree::Leaf leaf = tree.leaf(language.target);
                const auto data = slice(bytes_, fileOffset(leaf.address), leaf.size);
                result.push_back({type.name, id.name,
                                  static_cast<uint32_t>(std::stoul(language.name.substr(1))),
                                  Bytes(data.begin(), data.end())});
            }
        }
    }
    return result;
}

} // namespace kovalune::test
