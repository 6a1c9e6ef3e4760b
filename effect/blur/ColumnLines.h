// Some neighbouring columns of a rectangle as lines of their own, and the way of their results back: a vertical pass is then the
// work of a horizontal one, and rows are read and written in their own order.
#pragma once

#include "effect/blur/LineWindow.h"
#include "effect/raster/MaskPlane.h"
#include "effect/raster/Rows.h"
#include "effect/raster/ScratchBlock.h"
#include "effect/share/SizeProduct.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kovalune {

/// The masks of a record; `keep` is null in a blur that leaves alpha alone.
struct LineMasks {
    const MaskView& counted;
    const MaskView* keep;
};

/// The columns that a vertical pass works on at once, with their masks and results.
template <class Format>
class ColumnLines {
public:
    using Pixel = typename Format::Pixel;

    /// Two cache lines of a row.
    static constexpr int32_t kColumns = 128 / sizeof(Pixel);

    ColumnLines(int32_t height, bool hasKeep, ScratchLayout& layout)
        : height_(height), pixelStep_(stepOf<Pixel>(height)), maskStep_(stepOf<uint8_t>(height)) {
        pixels_ = layout.take<Pixel>(sizeProduct<std::size_t>(pixelStep_, kColumns));
        results_ = layout.take<Pixel>(sizeProduct<std::size_t>(pixelStep_, kColumns));
        counted_ = layout.take<uint8_t>(sizeProduct<std::size_t>(maskStep_, kColumns));
        keep_ = hasKeep ? layout.take<uint8_t>(sizeProduct<std::size_t>(maskStep_, kColumns)) : nullptr;
    }

    /// Takes `columns` columns of a record's rectangle apart, from `left` on. Of rows that count in none of them little is
    /// read but the mask.
    template <class Record>
    void gather(const Record& record, const LineMasks& masks, int32_t left, int32_t columns) {
        for (int32_t y = 0; y < height_; y += kRows) {
            const int32_t rows = std::min(kRows, height_ - y);
            if (!gatherMask(masks.counted, counted_, y, rows, left, columns)) {
                continue;
            }
            gatherPixels(record, y, rows, left, columns);
            if (keep_ != nullptr) {
                gatherMask(*masks.keep, keep_, y, rows, left, columns);
            }
        }
    }

    /// Column `c` of those that were gathered.
    Line<Pixel> line(int32_t c, int32_t reach) const {
        return {pixels_ + at(c, pixelStep_), counted_ + at(c, maskStep_),
                keep_ != nullptr ? keep_ + at(c, maskStep_) : nullptr, height_, reach};
    }
    Pixel* result(int32_t c) const { return results_ + at(c, pixelStep_); }

    /// Lays the results of masked-in pixels back, by `lay(result, target)`.
    template <class Record, class Lay>
    void scatter(const Record& record, const LineMasks& masks, int32_t left, int32_t columns,
                 const Lay& lay) const {
        for (int32_t y = 0; y < height_; ++y) {
            if (y + kRows < height_ && mayHold(masks.counted.row(y + kRows) + left, columns)) {
                prefetchEnds(rowOf<Format>(*record.dst, record.rect, y + kRows) + left, columns);
            }
            const uint8_t* const counted = masks.counted.row(y) + left;
            Pixel* const row = rowOf<Format>(*record.dst, record.rect, y) + left;
            const Pixel* const result = results_ + y;
            const Held held = columns == kColumns ? heldOf(counted) : Held::kSome;
            if (held == Held::kAll) {
                for (int32_t c = 0; c < kColumns; ++c) {
                    lay(result[at(c, pixelStep_)], row[c]);
                }
            } else if (held == Held::kSome) {
                forEachHeld(counted, columns, [&](int32_t c) { lay(result[at(c, pixelStep_)], row[c]); });
            }
        }
    }

private:
    /// The rows that are taken apart at once: what fills a cache line of each column.
    static constexpr int32_t kRows = 8;

    static constexpr int32_t kRowsAhead = 16; ///< that masks are asked for

    /// Lines have room for whole blocks of rows, and stand an odd number of cache lines apart, so that a row of them does not
    /// fall on one set of a cache.
    template <class T>
    static std::size_t stepOf(int32_t height) {
        const auto rows = (static_cast<std::size_t>(height) + kRows - 1) / kRows * kRows;
        const std::size_t cacheLines = (sizeProduct<std::size_t>(rows, sizeof(T)) + 63) / 64;
        return (cacheLines | 1) * 64 / sizeof(T);
    }
    static std::size_t at(int32_t c, std::size_t step) { return sizeProduct<std::size_t>(c, step); }

    /// The one cache line between, or two, come along.
    static void prefetchEnds(const Pixel* row, int32_t columns) {
        __builtin_prefetch(row);
        __builtin_prefetch(row + columns - 1);
    }

    /// Elements are taken eight at a time, as the bytes of one number.
    static constexpr int32_t kWords = kColumns / 8;
    static constexpr uint64_t kOnes = ~uint64_t{0} / 0xff;

    static uint64_t eightAt(const uint8_t* mask, int32_t word) {
        uint64_t eight = 0;
        std::memcpy(&eight, mask + std::ptrdiff_t{word} * 8, sizeof eight);
        return eight;
    }

    /// What of some places is masked in. A mask's elements are mostly 1; others may count as some only.
    enum class Held : uint8_t { kNone, kSome, kAll };

    static bool mayHold(const uint8_t* mask, int32_t columns) {
        return columns < kColumns || heldOf(mask) != Held::kNone;
    }
    static Held heldOf(const uint8_t* mask) {
        uint64_t any = 0;
        uint64_t all = kOnes;
        for (int32_t word = 0; word < kWords; ++word) {
            any |= eightAt(mask, word);
            all &= eightAt(mask, word);
        }
        return any == 0 ? Held::kNone : all == kOnes ? Held::kAll : Held::kSome;
    }

    /// Calls `each(c)` for what is masked in. In noise a question for each pixel would be answered wrongly half of the time.
    template <class Each>
    static void forEachHeld(const uint8_t* mask, int32_t count, const Each& each) {
        constexpr uint64_t kLowBits = kOnes * 0x7f;
        int32_t c = 0;
        for (; c + 8 <= count; c += 8) {
            const uint64_t eight = eightAt(mask + c, 0);
            uint64_t held = (((eight & kLowBits) + kLowBits) | eight) & ~kLowBits;
            for (; held != 0; held &= held - 1) {
                each(c + std::countr_zero(held) / 8);
            }
        }
        for (; c < count; ++c) {
            if (mask[c] != 0) {
                each(c);
            }
        }
    }

    using MaskRow = uint8_t __attribute__((vector_size(16)));
    static_assert(kColumns <= 16);

    /// Row r's byte c becomes byte r of column c; two columns stand in one vector. Each turn takes the highest bit of the number of
    /// a row to the lowest place of its bytes' numbers, and their highest bit to the lowest place of its own.
    static void transpose(MaskRow* rows) {
        for (int32_t turn = 0; turn < 3; ++turn) {
            MaskRow turned[std::size_t{kRows}];
            for (std::ptrdiff_t r = 0; r < kRows / 2; ++r) {
                const MaskRow& upper = rows[r];
                const MaskRow& lower = rows[r + kRows / 2];
                turned[2 * r] = __builtin_shufflevector(upper, lower, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5,
                                                        21, 6, 22, 7, 23);
                turned[2 * r + 1] = __builtin_shufflevector(upper, lower, 8, 24, 9, 25, 10, 26, 11, 27, 12,
                                                            28, 13, 29, 14, 30, 15, 31);
            }
            std::copy_n(turned, kRows, rows);
        }
    }

    /// Whether the rows have anything.
    bool gatherMask(const MaskView& mask, uint8_t* lines, int32_t y, int32_t rows, int32_t left,
                    int32_t columns) const {
        MaskRow block[std::size_t{kRows}] = {};
        MaskRow any{};
        MaskRow all = ~MaskRow{};
        for (int32_t r = 0; r < std::min(rows, kRows); ++r) {
            const uint8_t* const row = mask.row(y + r) + left;
            __builtin_prefetch(mask.row(std::min(y + r + kRowsAhead, height_ - 1)) + left + columns - 1);
            if (columns == kColumns) {
                std::memcpy(&block[r], row, std::size_t{kColumns}); // one load
            } else {
                std::memcpy(&block[r], row, static_cast<std::size_t>(columns));
            }
        }
        for (const MaskRow& row : block) {
            any |= row;
            all &= row;
        }
        const bool isEmpty = wordsOf(any)[0] == 0 && wordsOf(any)[1] == 0;
        const bool isFull = wordsOf(all)[0] == kOnes && (kWords == 1 || wordsOf(all)[1] == kOnes);
        if (isFull) {
            std::fill_n(block, kRows, MaskRow{} + 1);
        } else if (!isEmpty) {
            transpose(block);
        }
        for (int32_t c = 0; c < columns; c += 2) { // there is room for an even number
            const std::array<uint64_t, 2> words = wordsOf(block[c / 2]);
            std::memcpy(lines + at(c, maskStep_) + y, &words[0], kRows);
            std::memcpy(lines + at(c + 1, maskStep_) + y, &words[1], kRows);
        }
        return !isEmpty;
    }

    static std::array<uint64_t, 2> wordsOf(const MaskRow& row) {
        std::array<uint64_t, 2> words{};
        std::memcpy(words.data(), &row, sizeof row);
        return words;
    }

    template <class Record>
    void gatherPixels(const Record& record, int32_t y, int32_t rows, int32_t left, int32_t columns) const {
        const Pixel* row[std::size_t{kRows}];
        for (int32_t r = 0; r < kRows; ++r) {
            row[r] = rowOf<Format>(*record.src, record.rect, y + std::min(r, rows - 1)) + left;
        }
        for (int32_t r = 0; r < kRows && y + kRows + r < height_; ++r) {
            prefetchEnds(rowOf<Format>(*record.src, record.rect, y + kRows + r) + left, columns);
        }
        int32_t c = 0;
        if constexpr (sizeof(Pixel) == sizeof(uint64_t)) {
            for (; c + 2 <= columns; c += 2) {
                gatherPair(row, c, y);
            }
        }
        for (; c < columns; ++c) {
            Pixel* const line = pixels_ + at(c, pixelStep_) + y;
            for (int32_t r = 0; r < kRows; ++r) {
                line[r] = row[r][c];
            }
        }
    }

    /// Two columns, of which two rows are turned at a time.
    void gatherPair(const Pixel* const* row, int32_t c, int32_t y) const {
        using Pair = uint64_t __attribute__((vector_size(16)));
        Pixel* const first = pixels_ + at(c, pixelStep_) + y;
        Pixel* const second = pixels_ + at(c + 1, pixelStep_) + y;
        for (int32_t r = 0; r < kRows; r += 2) {
            Pair upper;
            Pair lower;
            std::memcpy(&upper, row[r] + c, sizeof upper);
            std::memcpy(&lower, row[r + 1] + c, sizeof lower);
            const Pair ofFirst = __builtin_shufflevector(upper, lower, 0, 2);
            const Pair ofSecond = __builtin_shufflevector(upper, lower, 1, 3);
            std::memcpy(first + r, &ofFirst, sizeof ofFirst);
            std::memcpy(second + r, &ofSecond, sizeof ofSecond);
        }
    }

    int32_t height_;
    std::size_t pixelStep_;
    std::size_t maskStep_;
    Pixel* pixels_;
    Pixel* results_;
    uint8_t* counted_;
    uint8_t* keep_;
};

} // namespace kovalune
