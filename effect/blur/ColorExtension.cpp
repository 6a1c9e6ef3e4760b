#include "effect/blur/ColorExtension.h"

#include "effect/blur/ColorExtensionLines.h"
#include "effect/raster/Bands.h"
#include "effect/raster/ColumnTile.h"
#include "effect/raster/MaskRuns.h"
#include "effect/raster/Rows.h"
#include "effect/raster/ScratchBlock.h"
#include "effect/share/Integers.h"
#include "effect/share/SizeProduct.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace kovalune {
namespace {

/// The reach of the walks in whole pixels.
int32_t wholeReach(double reach) {
    return reach >= static_cast<double>(kFarthest) ? kFarthest : std::max(truncToInt32(reach), 0);
}

std::size_t sizeOf(int32_t count, std::size_t elementBytes) {
    return sizeProduct<std::size_t>(count, elementBytes);
}

/// What the steps along columns gather and find in each column of a tile.
class ExtendTile {
public:
    static constexpr int32_t kColumns = 32;
    static constexpr int32_t kTilesAtOnce = 8; ///< that are looked through for what is active

    ExtendTile(int32_t height, Workbench* bench, int32_t i)
        : tile_(height, kBytesBeforeActive + kTilesAtOnce, bench, i) {}

    /// False where there was no memory; nothing else may be called then.
    bool ready() const { return tile_.ready(); }

    uint8_t* limit(int32_t column) const { return tile_.line<uint8_t>(0, column); }
    uint8_t* seed(int32_t column) const { return tile_.line<uint8_t>(kColumns, column); }
    uint16_t* distances(int32_t column) const { return tile_.line<uint16_t>(kBytesBeforeDistances, column); }
    /// A position for each row, of a spread's origin or of the nearest entry.
    int32_t* positions(int32_t column) const { return tile_.line<int32_t>(kBytesBeforePositions, column); }

    NearestEntry* nearest() const { return tile_.line<NearestEntry>(kBytesBeforeSearch, 0); }
    PassedEntries passed() const {
        return PassedEntries(tile_.line<PassedEntries::Entry>(kBytesBeforeSearch + sizeof(NearestEntry), 0));
    }

    /// Whether a row has core, or an entry of the horizontal spread, in any column of a tile.
    uint8_t* activeRows(int32_t tile) const { return tile_.line<uint8_t>(kBytesBeforeActive, tile); }

    /// Copies a stretch of `columns` columns of a plane from `left` on.
    template <class Plane, class LineOf>
    void gather(const Plane& plane, const Stretch& rows, int32_t left, int32_t columns,
                const LineOf& lineOf) const {
        for (int32_t y = rows.first; y < rows.end; ++y) {
            const auto* const row = plane.row(y) + left;
            for (int32_t c = 0; c < columns; ++c) {
                lineOf(c)[y] = row[c];
            }
        }
    }

private:
    static constexpr std::size_t kBytesBeforeDistances = std::size_t{kColumns} * 2;
    static constexpr std::size_t kBytesBeforePositions = std::size_t{kColumns} * 4;
    static constexpr std::size_t kBytesBeforeSearch = std::size_t{kColumns} * 8;
    static constexpr std::size_t kBytesBeforeActive =
        kBytesBeforeSearch + sizeof(NearestEntry) + sizeof(PassedEntries::Entry);

    ColumnTile tile_;
};

/// Some columns of the rectangle.
struct Columns {
    int32_t left;
    int32_t count;
};

/// What spreads along the columns of a tile, row by row into the world. The core's own colour stands where the
/// horizontal spread has been.
template <class Format>
void storeSpread(ExtendRecord& record, const ExtendTile& tile, const Stretch& rows, const Columns& columns) {
    for (int32_t y = rows.first; y < rows.end; ++y) {
        auto* const out = rowOf<Format>(*record.spreadWorld, record.rect, y) + columns.left;
        uint16_t* const distances = record.verticalReach.row(y) + columns.left;
        const bool coreStands = record.limitMask.rowActive(y);
        for (int32_t c = 0; c < columns.count; ++c) {
            const int32_t from = tile.positions(c)[y];
            const bool isCore = tile.seed(c)[y] != 0;
            if (from != kNowhere) {
                distances[c] = static_cast<uint16_t>(std::abs(y - from));
            }
            if (isCore ? !coreStands : from != kNowhere) {
                out[c] = rowOf<Format>(*record.src, record.rect, isCore ? y : from)[columns.left + c];
            }
        }
    }
}

/// Finds in each column of the tile the nearest entry that the horizontal spread left.
void searchTile(ExtendRecord& record, const ExtendTile& tile, const Stretch& rows, const Columns& columns,
                int32_t reach) {
    const int32_t height = record.rect.height();
    PassedEntries passed = tile.passed();
    tile.gather(record.horizontalReach, rows, columns.left, columns.count,
                [&](int32_t c) { return tile.distances(c); });
    for (int32_t c = 0; c < columns.count; ++c) {
        searchLine({tile.limit(c), tile.seed(c), height, reach}, rows, tile.distances(c), passed,
                   tile.nearest());
        std::transform(tile.nearest() + rows.first, tile.nearest() + rows.end, tile.positions(c) + rows.first,
                       [](const NearestEntry& entry) { return entry.at; });
    }
    for (int32_t y = rows.first; y < rows.end; ++y) {
        uint16_t* const found = record.nearestInColumn.row(y) + columns.left;
        for (int32_t c = 0; c < columns.count; ++c) {
            found[c] = static_cast<uint16_t>(tile.positions(c)[y]);
        }
    }
}

bool isActive(const ExtendRecord& record, int32_t y, const Columns& columns) {
    const int32_t end = columns.left + columns.count;
    return nextMaskedIn(record.seedMask.row(y), columns.left, end) < end ||
           nextKnown(record.horizontalReach.row(y), columns.left, end) < end;
}

/// The columns of a tile, of `count` from `left` on.
Columns columnsOfTile(const Columns& all, int32_t tile) {
    const int32_t before = tile * ExtendTile::kColumns;
    return {all.left + before, std::min(ExtendTile::kColumns, all.count - before)};
}

/// Looks row by row which of some tiles have anything there, and takes each pixel for one without a nearest entry.
void readActiveRows(ExtendRecord& record, const ExtendTile& tile, const Columns& all) {
    constexpr int32_t kRowsAhead = 8;
    const int32_t height = record.rect.height();
    for (int32_t y = 0; y < height; ++y) {
        const int32_t ahead = std::min(y + kRowsAhead, height - 1);
        prefetchPart(record.seedMask.row(ahead) + all.left, all.count);
        prefetchPart(record.horizontalReach.row(ahead) + all.left, all.count);
        prefetchPart(record.nearestInColumn.row(ahead) + all.left, all.count);
        std::fill_n(record.nearestInColumn.row(y) + all.left, all.count, ExtendRecord::kNoRow);
        for (int32_t t = 0; t * ExtendTile::kColumns < all.count; ++t) {
            tile.activeRows(t)[y] = isActive(record, y, columnsOfTile(all, t)) ? 1 : 0;
        }
    }
}

template <class Format>
void extendStretch(ExtendRecord& record, const ExtendTile& tile, const Stretch& rows, const Columns& columns,
                   int32_t reach) {
    const int32_t height = record.rect.height();
    tile.gather(record.limitMask, rows, columns.left, columns.count,
                [&](int32_t c) { return tile.limit(c); });
    tile.gather(record.seedMask, rows, columns.left, columns.count, [&](int32_t c) { return tile.seed(c); });
    for (int32_t c = 0; c < columns.count; ++c) {
        spreadLine({tile.limit(c), tile.seed(c), height, reach}, rows, record.stopAtGap, tile.positions(c));
    }
    storeSpread<Format>(record, tile, rows, columns);
    searchTile(record, tile, rows, columns, reach);
}

static_assert(static_cast<uint16_t>(kNowhere) == ExtendRecord::kNoRow);

/// How alpha falls, to zero at `reach`; undefined for formats that no colour is extended in.
template <class Format>
struct FadeOf;

template <>
struct FadeOf<Argb16> {
    static uint16_t faded(uint16_t alpha, float length, double reach) {
        const float scaled = (static_cast<float>(reach) - length) * static_cast<float>(alpha);
        return static_cast<uint16_t>(truncToInt32(static_cast<double>(scaled) / reach));
    }
};

template <>
struct FadeOf<Argb32> {
    static float faded(float alpha, float length, double reach) {
        return static_cast<float>(static_cast<double>((static_cast<float>(reach) - length) * alpha) / reach);
    }
};

/// The nearest entry of a pixel's row and column; the one in the row where both are as near.
struct FoundColor {
    int32_t x = 0;
    int32_t y = 0;
    int32_t squared;
};

FoundColor nearestOf(const ExtendRecord& record, int32_t x, int32_t y, const NearestEntry& inRow) {
    FoundColor found{0, 0, inRow.squared};
    if (inRow.at != kNowhere) {
        found = {inRow.at, y, inRow.squared};
    }
    const uint16_t row = record.nearestInColumn.row(y)[x];
    if (row != ExtendRecord::kNoRow) {
        const int32_t offset = y - row;
        const int32_t distance = record.horizontalReach.row(row)[x];
        const int32_t squared = offset * offset + distance * distance;
        if (squared < found.squared) {
            found = {x, row, squared};
        }
    }
    return found;
}

template <class Format>
typename Format::Pixel extendedPixel(const ExtendRecord& record, const FoundColor& found) {
    auto pixel = rowOf<Format>(*record.spreadWorld, record.rect, found.y)[found.x];
    auto length = static_cast<float>(std::sqrt(static_cast<double>(found.squared)));
    if (static_cast<double>(length) > record.reach) {
        length = static_cast<float>(record.reach);
    }
    pixel.alpha = FadeOf<Format>::faded(pixel.alpha, length, record.reach);
    return pixel;
}

template <class Format>
void spreadRow(ExtendRecord& record, int32_t y, int32_t* from) {
    const int32_t width = record.rect.width();
    const uint8_t* const seed = record.seedMask.row(y);
    const ExtendLine line = {record.limitMask.row(y), seed, width, wholeReach(record.reach)};
    const auto* const src = rowOf<Format>(*record.src, record.rect, y);
    auto* const out = rowOf<Format>(*record.spreadWorld, record.rect, y);
    uint16_t* const distances = record.horizontalReach.row(y);
    const auto spread = [&](const Stretch& stretch) {
        spreadLine(line, stretch, record.stopAtGap, from);
        for (int32_t x = stretch.first; x < stretch.end; ++x) {
            if (seed[x] != 0) {
                out[x] = src[x];
                distances[x] = 0;
            } else if (from[x] != kNowhere) {
                out[x] = src[from[x]];
                distances[x] = static_cast<uint16_t>(std::abs(x - from[x]));
            }
        }
    };
    forEachStretch(
        width, line.reach, [&](int32_t x) { return nextMaskedIn(seed, x, width); },
        [&](int32_t x) { return nextMaskedOut(seed, x, width); }, spread);
}

/// One row on its way to the destination, where the nearest entry of each pixel along it is known.
template <class Format>
class ResolvedRow {
public:
    using Pixel = typename Format::Pixel;

    ResolvedRow(const ExtendRecord& record, int32_t y, const NearestEntry* nearest, const Pixel& farPixel)
        : record_(record), y_(y), limit_(record.limitMask.row(y)), seed_(record.seedMask.row(y)),
          nearest_(nearest), inColumn_(record.nearestInColumn.row(y)),
          src_(rowOf<Format>(*record.src, record.rect, y)), dst_(rowOf<Format>(*record.dst, record.rect, y)),
          farPixel_(farPixel) {}

    void store(const Stretch& stretch) const {
        for (int32_t x = stretch.first; x < stretch.end; ++x) {
            storePixel(x);
        }
    }

    /// Where no entry lies near along the row: mostly none does along the columns either.
    void storeFar(const Stretch& stretch) const {
        constexpr int32_t kEight = 8;
        int32_t x = stretch.first;
        for (; x + kEight <= stretch.end; x += kEight) {
            if (areFar(x)) {
                std::fill_n(dst_ + x, kEight, farPixel_);
            } else if (!areOutside(x)) {
                store({x, x + kEight});
            }
        }
        store({x, stretch.end});
    }

private:
    static uint64_t eightAt(const uint8_t* elements) {
        uint64_t eight = 0;
        std::memcpy(&eight, elements, sizeof eight);
        return eight;
    }

    /// Eight pixels neither of the area nor of the core.
    bool areOutside(int32_t x) const { return (eightAt(seed_ + x) | eightAt(limit_ + x)) == 0; }

    /// Eight pixels of the area, none of the core, none with an entry in its column.
    bool areFar(int32_t x) const {
        uint64_t columns[2] = {};
        std::memcpy(columns, inColumn_ + x, sizeof columns);
        return eightAt(seed_ + x) == 0 && (columns[0] & columns[1]) == ~uint64_t{0} &&
               nextMaskedOut(limit_, x, x + 8) == x + 8;
    }

    void storePixel(int32_t x) const {
        if (seed_[x] != 0) {
            dst_[x] = src_[x];
        } else if (limit_[x] != 0) {
            const bool isFound = nearest_[x].at != kNowhere || inColumn_[x] != ExtendRecord::kNoRow;
            dst_[x] =
                isFound ? extendedPixel<Format>(record_, nearestOf(record_, x, y_, nearest_[x])) : farPixel_;
        }
    }

    const ExtendRecord& record_;
    int32_t y_;
    const uint8_t* limit_;
    const uint8_t* seed_;
    const NearestEntry* nearest_;
    const uint16_t* inColumn_;
    const Pixel* src_;
    Pixel* dst_;
    Pixel farPixel_;
};
static_assert(ExtendRecord::kNoRow == 0xFFFF);

} // namespace

template <class Format>
PF_Err spreadRows(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    auto& record = *static_cast<ExtendRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    if (band.first >= band.end) {
        return PF_Err_NONE;
    }
    const ScratchBlock scratch(record.workbench, i, sizeOf(width, sizeof(int32_t)));
    if (scratch.memory() == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    auto* const from = objectAt<int32_t>(scratch.memory(), 0);
    for (int32_t y = band.first; y < band.end; ++y) {
        if (record.limitMask.rowActive(y)) {
            spreadRow<Format>(record, y, from);
        }
    }
    return PF_Err_NONE;
}

template <class Format>
PF_Err spreadColumns(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    auto& record = *static_cast<ExtendRecord*>(refcon);
    const int32_t height = record.rect.height();
    const int32_t reach = wholeReach(record.reach);
    const Band band = bandOf(record.rect.width(), i, n);
    if (band.first >= band.end) {
        return PF_Err_NONE;
    }
    const ExtendTile tile(height, record.workbench, i);
    if (!tile.ready()) {
        return PF_Err_OUT_OF_MEMORY;
    }
    constexpr int32_t kAtOnce = ExtendTile::kTilesAtOnce * ExtendTile::kColumns;
    for (int32_t left = band.first; left < band.end; left += kAtOnce) {
        const Columns all = {left, std::min(kAtOnce, band.end - left)};
        readActiveRows(record, tile, all);
        for (int32_t t = 0; t * ExtendTile::kColumns < all.count; ++t) {
            const uint8_t* const active = tile.activeRows(t);
            forEachStretch(
                height, reach, [&](int32_t y) { return nextMaskedIn(active, y, height); },
                [&](int32_t y) { return nextMaskedOut(active, y, height); },
                [&](const Stretch& rows) {
                    extendStretch<Format>(record, tile, rows, columnsOfTile(all, t), reach);
                });
        }
    }
    return PF_Err_NONE;
}

template <class Format>
PF_Err resolveRows(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    const auto& record = *static_cast<const ExtendRecord*>(refcon);
    const int32_t width = record.rect.width();
    const int32_t reach = wholeReach(record.reach);
    const Band band = bandOf(record.rect.height(), i, n);
    if (band.first >= band.end || width <= 0) {
        return PF_Err_NONE;
    }
    const std::size_t nearestBytes = sizeOf(width, sizeof(NearestEntry));
    const ScratchBlock scratch(record.workbench, i,
                               nearestBytes + sizeOf(width, sizeof(PassedEntries::Entry)));
    if (scratch.memory() == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    auto* const nearest = objectAt<NearestEntry>(scratch.memory(), 0);
    PassedEntries passed(
        objectAt<PassedEntries::Entry>(scratch.memory(), static_cast<std::ptrdiff_t>(nearestBytes)));
    const auto farPixel = extendedPixel<Format>(record, FoundColor{0, 0, NearestEntry{}.squared});
    for (int32_t y = band.first; y < band.end; ++y) {
        if (!record.limitMask.rowActive(y)) {
            continue;
        }
        const ExtendLine line = {record.limitMask.row(y), record.seedMask.row(y), width, reach};
        const uint16_t* const distances = record.verticalReach.row(y);
        const ResolvedRow<Format> row(record, y, nearest, farPixel);
        std::fill_n(nearest, width, NearestEntry{});
        int32_t stored = 0;
        forEachStretch(
            width, reach, [&](int32_t x) { return nextKnown(distances, x, width); },
            [&](int32_t x) { return nextUnknown(distances, x, width); },
            [&](const Stretch& stretch) {
                searchLine(line, stretch, distances, passed, nearest);
                row.storeFar({stored, stretch.first});
                row.store(stretch);
                stored = stretch.end;
            });
        row.storeFar({stored, width});
    }
    return PF_Err_NONE;
}

template <class Format>
PF_Err extendColors(PF_InData* inData, ExtendRecord record) {
    if (record.src == nullptr || record.dst == nullptr || record.spreadWorld == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    const int32_t width = record.rect.width();
    const int32_t height = record.rect.height();
    record.horizontalReach = MaskPlane16(inData, width, height);
    record.verticalReach = MaskPlane16(inData, width, height);
    record.nearestInColumn = MaskPlane16(inData, width, height);
    record.horizontalReach.fillFar();
    record.verticalReach.fillFar();
    for (const PassFunction step : {spreadRows<Format>, spreadColumns<Format>, resolveRows<Format>}) {
        const PF_Err err = iterate(inData, record, step);
        if (err != PF_Err_NONE) {
            return err;
        }
    }
    return PF_Err_NONE;
}

template PF_Err extendColors<Argb16>(PF_InData*, ExtendRecord);
template PF_Err extendColors<Argb32>(PF_InData*, ExtendRecord);
template PF_Err spreadRows<Argb16>(void*, A_long, A_long, A_long);
template PF_Err spreadColumns<Argb16>(void*, A_long, A_long, A_long);
template PF_Err resolveRows<Argb16>(void*, A_long, A_long, A_long);
template PF_Err spreadRows<Argb32>(void*, A_long, A_long, A_long);
template PF_Err spreadColumns<Argb32>(void*, A_long, A_long, A_long);
template PF_Err resolveRows<Argb32>(void*, A_long, A_long, A_long);

} // namespace kovalune
