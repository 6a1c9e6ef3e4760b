#include "effect/frame/sequence/SequenceRecord.h"

#include <algorithm>

namespace kovalune {
namespace {

// Where the words stand.
constexpr std::size_t kMagicAt = 0;
constexpr std::size_t kFlattenedAt = 4;
constexpr std::size_t kReservedAt = 16;

struct WordOrder {
    std::size_t sizeAt;
    std::size_t versionAt;
};
constexpr WordOrder kInMemory = {.sizeAt = 8, .versionAt = 12};
constexpr WordOrder kFlattened = {.sizeAt = 12, .versionAt = 8};

uint32_t wordAt(std::span<const uint8_t> block, std::size_t at) {
    return uint32_t{block[at]} | uint32_t{block[at + 1]} << 8 | uint32_t{block[at + 2]} << 16 |
           uint32_t{block[at + 3]} << 24;
}

void putWord(SequenceBlock block, std::size_t at, uint32_t word) {
    for (std::size_t i = 0; i < 4; ++i) {
        block[at + i] = static_cast<uint8_t>(word >> (8 * i));
    }
}

void write(const SequenceRecord& record, SequenceBlock block, const WordOrder& order, bool flattened) {
    putWord(block, kMagicAt, SequenceRecord::kMagic);
    putWord(block, kFlattenedAt, flattened ? 1 : 0);
    putWord(block, order.sizeAt, record.size);
    putWord(block, order.versionAt, record.version);
    std::copy(record.reserved.begin(), record.reserved.end(), block.begin() + kReservedAt);
}

SequenceRecord read(std::span<const uint8_t> block, const WordOrder& order) {
    SequenceRecord record;
    record.size = wordAt(block, order.sizeAt);
    record.version = wordAt(block, order.versionAt);
    std::copy_n(block.begin() + kReservedAt, record.reserved.size(), record.reserved.begin());
    return record;
}

} // namespace

void writeInMemory(const SequenceRecord& record, SequenceBlock block) {
    write(record, block, kInMemory, false);
}

void writeFlattened(const SequenceRecord& record, SequenceBlock block) {
    write(record, block, kFlattened, true);
}

SequenceRecord readInMemory(ConstSequenceBlock block) {
    return read(block, kInMemory);
}

SequenceRecord readFlattened(std::span<const uint8_t> block) {
    if (!isSequenceBlock(block)) {
        return {};
    }
    const SequenceRecord record = read(block, kFlattened);
    return record.version == SequenceRecord::kVersion ? record : SequenceRecord{};
}

bool isSequenceBlock(std::span<const uint8_t> block) {
    return block.size() >= SequenceRecord::kBytes && wordAt(block, kMagicAt) == SequenceRecord::kMagic;
}

} // namespace kovalune
