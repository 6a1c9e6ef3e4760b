// The block that every instance of the effect keeps in the host's project: 24 bytes that no render reads. What
// matters is their form, and that a foreign or damaged block is replaced and never trusted.
//
// Six 32-bit words, low byte first on every platform. In memory: magic, flattened, size, version and two
// reserved words. In a project version and size stand the other way round, as they have from the start: frozen.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kovalune {

struct SequenceRecord {
    static constexpr std::size_t kBytes = 24;
    static constexpr uint32_t kMagic = 0x70736571; ///< the bytes "qesp"
    static constexpr uint32_t kVersion = 1;

    uint32_t size = kBytes;
    uint32_t version = kVersion;
    std::array<uint8_t, 8> reserved = {}; ///< frozen: carried along unchanged

    friend bool operator==(const SequenceRecord&, const SequenceRecord&) = default;
};

using SequenceBlock = std::span<uint8_t, SequenceRecord::kBytes>;
using ConstSequenceBlock = std::span<const uint8_t, SequenceRecord::kBytes>;

void writeInMemory(const SequenceRecord& record, SequenceBlock block);
void writeFlattened(const SequenceRecord& record, SequenceBlock block);

/// Takes the block as a record in memory, whatever is in it.
SequenceRecord readInMemory(ConstSequenceBlock block);

/// Takes the block as a flattened one. One that is too short, or has another magic or version, gives a new
/// record; so does a record in memory, whose version does not stand where a flattened one has it.
SequenceRecord readFlattened(std::span<const uint8_t> block);

/// Whether a block is long enough and starts with the magic; the version is not looked at.
bool isSequenceBlock(std::span<const uint8_t> block);

} // namespace kovalune
