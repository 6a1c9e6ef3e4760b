#include "host/WorldOps.h"

#include "host/Image.h"
#include "host/Rects.h"

#include <array>
#include <cstring>

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

/// Calls row(worldBytes, pictureBytes, count) for each row that the world and the picture's part share.
template <class Byte, class Row>
void forSharedRows(const WorldInfo& world, const PF_LRect& place, const BasicImageView<Byte>& picture,
                   Row row) {
    const PF_LRect within =
        intersection(intersection(place, wholeLongRect(picture.width, picture.height)),
                     movedBy(wholeLongRect(world.width, world.height), place.left, place.top));
    const std::size_t pixelBytes = bytesPerPixel(world.format);
    const std::size_t count = static_cast<std::size_t>(within.right - within.left) * pixelBytes;
    for (A_long y = within.top; y < within.bottom; ++y) {
        row(pixelAt(world, within.left - place.left, y - place.top),
            picture.row(y) + static_cast<std::size_t>(within.left) * pixelBytes, count);
    }
}

} // namespace

PF_Err copyPixels(const WorldInfo& from, const WorldInfo& to, const PF_Rect* fromRect,
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
    const std::size_t count = static_cast<std::size_t>(part.right - part.left) * bytesPerPixel(from.format);
    const A_long rows = part.bottom - part.top;
    for (A_long row = 0; row < rows; ++row) {
        // Downwards copies inside one world go from the last row up, so that none is overwritten unread.
        const A_long y = part.top + (dy > 0 ? rows - 1 - row : row);
        std::memmove(pixelAt(to, part.left + dx, y + dy), pixelAt(from, part.left, y), count);
    }
    return PF_Err_NONE;
}

void fillPixels(const WorldInfo& world, const PF_Pixel* colour, const PF_Rect* rect) {
    const PF_LRect part = intersection(rectOrWhole(rect, world), wholeLongRect(world.width, world.height));
    const std::array<std::byte, kMostPixelBytes> bytes =
        encodedColour(world.format, colour != nullptr ? *colour : PF_Pixel{});
    const std::size_t pixelBytes = bytesPerPixel(world.format);
    const std::size_t count = static_cast<std::size_t>(part.right - part.left) * pixelBytes;
    std::byte* const first = pixelAt(world, part.left, part.top);
    for (std::size_t at = 0; at < count; at += pixelBytes) {
        std::memcpy(first + at, bytes.data(), pixelBytes);
    }
    for (A_long y = part.top + 1; y < part.bottom; ++y) {
        std::memcpy(pixelAt(world, part.left, y), first, count);
    }
}

void pictureToWorld(const ConstImageView& picture, const PF_LRect& place, const WorldInfo& world) {
    forSharedRows(world, place, picture, [](std::byte* pixels, const std::byte* source, std::size_t count) {
        std::memcpy(pixels, source, count);
    });
}

void worldToPicture(const WorldInfo& world, const PF_LRect& place, const ImageView& picture) {
    forSharedRows(world, place, picture, [](const std::byte* pixels, std::byte* target, std::size_t count) {
        std::memcpy(target, pixels, count);
    });
}

} // namespace kovalune::host
