// Some neighbouring columns of a rectangle as lines of their own, and the way of their results back: a vertical pass is then the
// work of a horizontal one, and rows are read and written in their own order.
#pragma once

#include "effect/blur/LineWindow.h"
#include "effect/raster/MaskPlane.h"
#include "effect/raster/Rows.h"
#include "effect/raster/ScratchBlock.h"
#include "effect/share/SizeProduct.h"

#include <algorithm>
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
            if (y + kRows < height_) {
                prefetchRow(rowOf<Format>(*record.dst, record.rect, y + kRows) + left, columns);
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

    /// Lines have room for whole blocks of rows, and stand an odd number of cache lines apart, so that a row of them does not
    /// fall on one set of a cache.
    template <class T>
    static std::size_t stepOf(int32_t height) {
        const auto rows = (static_cast<std::size_t>(height) + kRows - 1) / kRows * kRows;
        const std::size_t cacheLines = (sizeProduct<std::size_t>(rows, sizeof(T)) + 63) / 64;
        return (cacheLines | 1) * 64 / sizeof(T);
    }
    static std::size_t at(int32_t c, std::size_t step) { return sizeProduct<std::size_t>(c, step); }

    /// Rows lie far apart, so that no processor sees the next one coming.
    static void prefetchRow(const Pixel* row, int32_t columns) {
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

    /// Row r's byte c becomes row c's byte r.
    static void transpose(uint64_t* rows) {
        const auto exchange = [&](int32_t upper, int32_t lower, int32_t bits, uint64_t kept) {
            const uint64_t other = (rows[upper] >> bits ^ rows[lower]) & kept;
            rows[lower] ^= other;
            rows[upper] ^= other << bits;
        };
        for (int32_t r = 0; r < 4; ++r) {
            exchange(r, r + 4, 32, 0x00000000FFFFFFFF);
        }
        for (const int32_t r : {0, 1, 4, 5}) {
            exchange(r, r + 2, 16, 0x0000FFFF0000FFFF);
        }
        for (int32_t r = 0; r < 8; r += 2) {
            exchange(r, r + 1, 8, 0x00FF00FF00FF00FF);
        }
    }

    /// Whether the rows have anything.
    bool gatherMask(const MaskView& mask, uint8_t* lines, int32_t y, int32_t rows, int32_t left,
                    int32_t columns) const {
        uint64_t block[std::size_t{kWords}][std::size_t{kRows}];
        uint64_t any = 0;
        uint64_t all = kOnes;
        for (int32_t r = 0; r < kRows; ++r) {
            uint8_t row[std::size_t{kColumns}] = {};
            if (r < rows && columns == kColumns) {
                std::memcpy(row, mask.row(y + r) + left, sizeof row); // one load
            } else if (r < rows) {
                std::memcpy(row, mask.row(y + r) + left, static_cast<std::size_t>(columns));
            }
            for (int32_t word = 0; word < kWords; ++word) {
                block[word][r] = eightAt(row, word);
                any |= block[word][r];
                all &= block[word][r];
            }
        }
        for (int32_t word = 0; word < kWords; ++word) {
            if (any != 0 && all != kOnes) {
                transpose(block[word]);
            }
            for (int32_t c = word * 8; c < std::min(columns, word * 8 + 8); ++c) {
                std::memcpy(lines + at(c, maskStep_) + y, &block[word][c - word * 8], kRows);
            }
        }
        return any != 0;
    }

    template <class Record>
    void gatherPixels(const Record& record, int32_t y, int32_t rows, int32_t left, int32_t columns) const {
        const Pixel* row[std::size_t{kRows}];
        for (int32_t r = 0; r < kRows; ++r) {
            row[r] = rowOf<Format>(*record.src, record.rect, y + std::min(r, rows - 1)) + left;
        }
        for (int32_t r = 0; r < kRows && y + kRows + r < height_; ++r) {
            prefetchRow(rowOf<Format>(*record.src, record.rect, y + kRows + r) + left, columns);
        }
        for (int32_t c = 0; c < columns; ++c) {
            Pixel* const line = pixels_ + at(c, pixelStep_) + y;
            for (int32_t r = 0; r < kRows; ++r) {
                line[r] = row[r][c];
            }
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
