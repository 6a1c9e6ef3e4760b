#include "host/WorldOps.h"

#include "host/Image.h"
#include "host/Rects.h"
#include "host/WideStores.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <utility>

namespace kovalune::host {

namespace {

std::byte* pixelAt(const WorldInfo& world, A_long x, A_long y) {
    return world.data + y * world.rowBytes + static_cast<std::size_t>(x) * bytesPerPixel(world.format);
}

PF_LRect rectOrWhole(const PF_Rect* rect, const WorldInfo& world) {
    return rect != nullptr ? longRect(*rect) : wholeLongRect(world.width, world.height);
}

PF_LRect movedBy(const PF_LRect& rect, A_long dx, A_long dy) {
    return {rect.left + dx, rect.top + dy, rect.right + dx, rect.bottom + dy};
}

constexpr std::size_t kMostPixelBytes = sizeof(PF_PixelFloat);

std::array<std::byte, kMostPixelBytes> encodedColour(PF_PixelFormat format, const PF_Pixel& colour) {
    std::array<std::byte, kMostPixelBytes> bytes{};
    const auto to16 = [](A_u_char channel) { return static_cast<A_u_short>((channel * 32768 + 127) / 255); };
    const auto toFloat = [](A_u_char channel) { return static_cast<float>(channel) / 255.0F; };
    if (format == PF_PixelFormat_ARGB32) {
        std::memcpy(bytes.data(), &colour, sizeof colour);
    } else if (format == PF_PixelFormat_ARGB64) {
        const PF_Pixel16 deep{to16(colour.alpha), to16(colour.red), to16(colour.green), to16(colour.blue)};
        std::memcpy(bytes.data(), &deep, sizeof deep);
    } else {
        const PF_PixelFloat real{toFloat(colour.alpha), toFloat(colour.red), toFloat(colour.green),
                                 toFloat(colour.blue)};
        std::memcpy(bytes.data(), &real, sizeof real);
    }
    return bytes;
}

/// A part of each of some rows, all of one length.
template <class Byte>
struct BasicRows {
    Byte* first;
    std::ptrdiff_t apart; ///< bytes from a row to the next
    A_long count;
    std::size_t bytes; ///< of each

    BasicRows part(A_long row, A_long end) const { return {first + row * apart, apart, end - row, bytes}; }
    bool areOnePiece() const { return apart == static_cast<std::ptrdiff_t>(bytes); }
    std::size_t allBytes() const { return bytes * static_cast<std::size_t>(count); }
};

using Rows = BasicRows<std::byte>;
using ConstRows = BasicRows<const std::byte>;

ConstRows asConst(const Rows& rows) {
    return {rows.first, rows.apart, rows.count, rows.bytes};
}

/// What is not empty of `rect`, which lies inside the world.
Rows rowsOf(const WorldInfo& world, const PF_LRect& rect) {
    if (isEmpty(rect)) {
        return {world.data, world.rowBytes, 0, 0};
    }
    return {pixelAt(world, rect.left, rect.top), world.rowBytes, rect.bottom - rect.top,
            static_cast<std::size_t>(rect.right - rect.left) * bytesPerPixel(world.format)};
}

void copyRows(ByteCopy copy, const ConstRows& from, const Rows& to) {
    if (from.areOnePiece() && to.areOnePiece()) {
        copy(to.first, from.first, from.allBytes());
        return;
    }
    for (A_long row = 0; row < from.count; ++row) {
        copy(to.first + row * to.apart, from.first + row * from.apart, from.bytes);
    }
}

/// Of rows that have no byte in common.
void copyApart(const RowWork& work, const ConstRows& from, const Rows& to) {
    const ByteCopy copy = copyFor(from.allBytes());
    work.run(from.count, from.bytes,
             [&](A_long row, A_long end) { copyRows(copy, from.part(row, end), to.part(row, end)); });
}

/// Of rows that may overlap, the target's `down` rows below the source's: each is read before it is overwritten.
void copyWithin(const ConstRows& from, const Rows& to, A_long down) {
    for (A_long row = 0; row < from.count; ++row) {
        const A_long y = down > 0 ? from.count - 1 - row : row;
        std::memmove(to.first + y * to.apart, from.first + y * from.apart, from.bytes);
    }
}

/// Whether a byte of one may be a byte of the other.
bool mayOverlap(const ConstRows& a, const ConstRows& b) {
    const auto bounds = [](const ConstRows& rows) {
        const std::byte* const last = rows.first + (rows.count - 1) * rows.apart;
        return std::pair(std::min(rows.first, last, std::less<>()),
                         std::max(rows.first, last, std::less<>()) + rows.bytes);
    };
    const auto [aFirst, aEnd] = bounds(a);
    const auto [bFirst, bEnd] = bounds(b);
    return std::less<>()(aFirst, bEnd) && std::less<>()(bFirst, aEnd);
}

void clearRows(ByteClear clear, const Rows& rows) {
    if (rows.areOnePiece()) {
        clear(rows.first, rows.allBytes());
        return;
    }
    for (A_long row = 0; row < rows.count; ++row) {
        clear(rows.first + row * rows.apart, rows.bytes);
    }
}

/// The first row pixel by pixel, the others as copies of it.
void paintRows(const RowWork& work, const Rows& rows, const std::array<std::byte, kMostPixelBytes>& colour,
               std::size_t pixelBytes) {
    for (std::size_t at = 0; at < rows.bytes; at += pixelBytes) {
        std::memcpy(rows.first + at, colour.data(), pixelBytes);
    }
    work.run(rows.count - 1, rows.bytes, [&](A_long row, A_long end) {
        for (A_long y = row + 1; y <= end; ++y) {
            std::memcpy(rows.first + y * rows.apart, rows.first, rows.bytes);
        }
    });
}

/// What the world and the picture's part have in common, as rows of both.
template <class Byte>
std::pair<Rows, BasicRows<Byte>> sharedRows(const WorldInfo& world, const PF_LRect& place,
                                            const BasicImageView<Byte>& picture) {
    const PF_LRect within =
        intersection(intersection(place, wholeLongRect(picture.width, picture.height)),
                     movedBy(wholeLongRect(world.width, world.height), place.left, place.top));
    const Rows rows = rowsOf(world, movedBy(within, -place.left, -place.top));
    Byte* const first = rows.count == 0 ? picture.data
                                        : picture.row(within.top) + static_cast<std::size_t>(within.left) *
                                                                        bytesPerPixel(world.format);
    return {rows, {first, picture.rowBytes, rows.count, rows.bytes}};
}

} // namespace

PF_Err copyPixels(const RowWork& work, const WorldInfo& from, const WorldInfo& to, const PF_Rect* fromRect,
                  const PF_Rect* toRect) {
    const PF_LRect source = rectOrWhole(fromRect, from);
    const PF_LRect target = rectOrWhole(toRect, to);
    if (from.format != to.format || source.right - source.left != target.right - target.left ||
        source.bottom - source.top != target.bottom - target.top) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const A_long dx = target.left - source.left;
    const A_long dy = target.top - source.top;
    const PF_LRect part =
        intersection(intersection(source, wholeLongRect(from.width, from.height)),
                     movedBy(intersection(target, wholeLongRect(to.width, to.height)), -dx, -dy));
    const Rows toRows = rowsOf(to, movedBy(part, dx, dy));
    const ConstRows fromRows = asConst(rowsOf(from, part));
    if (fromRows.count == 0) {
        return PF_Err_NONE;
    }
    if (mayOverlap(fromRows, asConst(toRows))) {
        copyWithin(fromRows, toRows, dy);
    } else {
        copyApart(work, fromRows, toRows);
    }
    return PF_Err_NONE;
}

void fillPixels(const RowWork& work, const WorldInfo& world, const PF_Pixel* colour, const PF_Rect* rect) {
    const Rows rows =
        rowsOf(world, intersection(rectOrWhole(rect, world), wholeLongRect(world.width, world.height)));
    if (rows.count == 0) {
        return;
    }
    if (colour == nullptr) {
        const ByteClear clear = clearFor(rows.allBytes());
        work.run(rows.count, rows.bytes,
                 [&](A_long row, A_long end) { clearRows(clear, rows.part(row, end)); });
    } else {
        paintRows(work, rows, encodedColour(world.format, *colour), bytesPerPixel(world.format));
    }
}

void pictureToWorld(const RowWork& work, const ConstImageView& picture, const PF_LRect& place,
                    const WorldInfo& world) {
    const auto [to, from] = sharedRows(world, place, picture);
    copyApart(work, from, to);
}

void worldToPicture(const RowWork& work, const WorldInfo& world, const PF_LRect& place,
                    const ImageView& picture) {
    const auto [from, to] = sharedRows(world, place, picture);
    copyApart(work, asConst(from), to);
}

} // namespace kovalune::host
