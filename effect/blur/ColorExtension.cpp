#include "effect/blur/ColorExtension.h"

#include "effect/blur/ColorExtensionLines.h"
#include "effect/raster/Bands.h"
#include "effect/raster/ColumnTile.h"
#include "effect/raster/Rows.h"
#include "effect/raster/ScratchBlock.h"
#include "effect/share/Integers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace kovalune {
namespace {

/// The reach of the walks in whole pixels.
int32_t wholeReach(double reach) {
    return reach >= static_cast<double>(kFarthest) ? kFarthest : std::max(truncToInt32(reach), 0);
}

bool holdsAny(const uint8_t* elements, int32_t count) {
    uint8_t any = 0;
    for (int32_t p = 0; p < count; ++p) {
        any |= elements[p];
    }
    return any != 0;
}

std::size_t sizeOf(int32_t count, std::size_t elementBytes) {
    return static_cast<std::size_t>(count) * elementBytes;
}

/// What the steps along columns gather and find in each column of a tile.
class ExtendTile {
public:
    static constexpr int32_t kColumns = 32;

    explicit ExtendTile(int32_t height)
        : tile_(height, kBytesBeforeSearch + sizeof(NearestEntry) + sizeof(PassedEntries::Entry)) {}

    /// False where there was no memory; nothing else may be called then.
    bool ready() const { return tile_.ready(); }

    uint8_t* limit(int32_t column) const { return tile_.line<uint8_t>(0, column); }
    uint8_t* seed(int32_t column) const { return tile_.line<uint8_t>(kColumns, column); }
    uint16_t* distances(int32_t column) const { return tile_.line<uint16_t>(kColumns * 2, column); }
    /// A position for each row, of a spread's origin or of the nearest entry.
    int32_t* positions(int32_t column) const { return tile_.line<int32_t>(kColumns * 4, column); }

    NearestEntry* nearest() const { return tile_.line<NearestEntry>(kBytesBeforeSearch, 0); }
    PassedEntries passed() const {
        return PassedEntries(tile_.line<PassedEntries::Entry>(kBytesBeforeSearch + sizeof(NearestEntry), 0));
    }

    /// Copies `columns` columns of a plane from `left` on.
    template <class Plane, class LineOf>
    void gather(const Plane& plane, int32_t left, int32_t columns, const LineOf& lineOf) const {
        tile_.gather(
            columns, [&](int32_t y) { return plane.row(y) + left; }, lineOf);
    }

private:
    static constexpr std::size_t kBytesBeforeSearch = std::size_t{kColumns} * 8;

    ColumnTile tile_;
};

/// What spreads along the columns of a tile, row by row into the world. The core's own colour stands where the
/// horizontal spread has been.
template <class Format>
void storeSpread(ExtendRecord& record, const ExtendTile& tile, int32_t left, int32_t columns) {
    const int32_t height = record.rect.height();
    for (int32_t y = 0; y < height; ++y) {
        auto* const out = rowOf<Format>(*record.spreadWorld, record.rect, y) + left;
        uint16_t* const distances = record.verticalReach.row(y) + left;
        const bool coreStands = record.limitMask.rowActive(y);
        for (int32_t c = 0; c < columns; ++c) {
            const int32_t from = tile.positions(c)[y];
            const bool isCore = tile.seed(c)[y] != 0;
            if (from != kNowhere) {
                distances[c] = static_cast<uint16_t>(std::abs(y - from));
            }
            if (isCore ? !coreStands : from != kNowhere) {
                out[c] = rowOf<Format>(*record.src, record.rect, isCore ? y : from)[left + c];
            }
        }
    }
}

/// Finds in each column of the tile the nearest entry that the horizontal spread left.
void searchTile(ExtendRecord& record, const ExtendTile& tile, int32_t left, int32_t columns, int32_t reach) {
    const int32_t height = record.rect.height();
    PassedEntries passed = tile.passed();
    tile.gather(record.horizontalReach, left, columns, [&](int32_t c) { return tile.distances(c); });
    for (int32_t c = 0; c < columns; ++c) {
        searchLine({tile.limit(c), tile.seed(c), height, reach}, tile.distances(c), passed, tile.nearest());
        std::transform(tile.nearest(), tile.nearest() + height, tile.positions(c),
                       [](const NearestEntry& entry) { return entry.at; });
    }
    for (int32_t y = 0; y < height; ++y) {
        uint16_t* const rows = record.nearestInColumn.row(y) + left;
        for (int32_t c = 0; c < columns; ++c) {
            rows[c] = static_cast<uint16_t>(tile.positions(c)[y]);
        }
    }
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

} // namespace

template <class Format>
PF_Err spreadRows(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    auto& record = *static_cast<ExtendRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    if (band.first >= band.end) {
        return PF_Err_NONE;
    }
    const ScratchBlock scratch(sizeOf(width, sizeof(int32_t)));
    if (scratch.memory() == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    auto* const from = objectAt<int32_t>(scratch.memory(), 0);
    for (int32_t y = band.first; y < band.end; ++y) {
        const uint8_t* const seed = record.seedMask.row(y);
        if (!record.limitMask.rowActive(y) || !holdsAny(seed, width)) {
            continue;
        }
        spreadLine({record.limitMask.row(y), seed, width, wholeReach(record.reach)}, record.stopAtGap, from);
        const auto* const src = rowOf<Format>(*record.src, record.rect, y);
        auto* const out = rowOf<Format>(*record.spreadWorld, record.rect, y);
        uint16_t* const distances = record.horizontalReach.row(y);
        for (int32_t x = 0; x < width; ++x) {
            if (seed[x] != 0) {
                out[x] = src[x];
                distances[x] = 0;
            } else if (from[x] != kNowhere) {
                out[x] = src[from[x]];
                distances[x] = static_cast<uint16_t>(std::abs(x - from[x]));
            }
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
    const ExtendTile tile(height);
    if (!tile.ready()) {
        return PF_Err_OUT_OF_MEMORY;
    }
    for (int32_t left = band.first; left < band.end; left += ExtendTile::kColumns) {
        const int32_t columns = std::min(ExtendTile::kColumns, band.end - left);
        tile.gather(record.limitMask, left, columns, [&](int32_t c) { return tile.limit(c); });
        tile.gather(record.seedMask, left, columns, [&](int32_t c) { return tile.seed(c); });
        for (int32_t c = 0; c < columns; ++c) {
            spreadLine({tile.limit(c), tile.seed(c), height, reach}, record.stopAtGap, tile.positions(c));
        }
        storeSpread<Format>(record, tile, left, columns);
        searchTile(record, tile, left, columns, reach);
    }
    return PF_Err_NONE;
}

template <class Format>
PF_Err resolveRows(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    const auto& record = *static_cast<const ExtendRecord*>(refcon);
    const int32_t width = record.rect.width();
    const int32_t reach = wholeReach(record.reach);
    const Band band = bandOf(record.rect.height(), i, n);
    if (band.first >= band.end) {
        return PF_Err_NONE;
    }
    const std::size_t nearestBytes = sizeOf(width, sizeof(NearestEntry));
    const ScratchBlock scratch(nearestBytes + sizeOf(width, sizeof(PassedEntries::Entry)));
    if (scratch.memory() == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    auto* const nearest = objectAt<NearestEntry>(scratch.memory(), 0);
    PassedEntries passed(
        objectAt<PassedEntries::Entry>(scratch.memory(), static_cast<std::ptrdiff_t>(nearestBytes)));
    for (int32_t y = band.first; y < band.end; ++y) {
        if (!record.limitMask.rowActive(y)) {
            continue;
        }
        const ExtendLine line = {record.limitMask.row(y), record.seedMask.row(y), width, reach};
        searchLine(line, record.verticalReach.row(y), passed, nearest);
        const auto* const src = rowOf<Format>(*record.src, record.rect, y);
        auto* const dst = rowOf<Format>(*record.dst, record.rect, y);
        for (int32_t x = 0; x < width; ++x) {
            if (line.seed[x] != 0) {
                dst[x] = src[x];
            } else if (line.limit[x] != 0) {
                dst[x] = extendedPixel<Format>(record, nearestOf(record, x, y, nearest[x]));
            }
        }
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
