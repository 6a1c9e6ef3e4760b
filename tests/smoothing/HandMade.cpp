#include "tests/smoothing/HandMade.h"

#include <algorithm>
#include <cstring>

namespace kovalune::test {
namespace {

constexpr uint8_t kPadding = 0xc3;

template <class Channel>
void store(uint8_t* at, const PlainPixel& p) {
    const Channel channels[4] = {static_cast<Channel>(p.alpha), static_cast<Channel>(p.red),
                                 static_cast<Channel>(p.green), static_cast<Channel>(p.blue)};
    std::memcpy(at, channels, sizeof channels);
}

template <class Channel>
PlainPixel load(const uint8_t* at) {
    Channel channels[4] = {};
    std::memcpy(channels, at, sizeof channels);
    return {static_cast<double>(channels[0]), static_cast<double>(channels[1]),
            static_cast<double>(channels[2]), static_cast<double>(channels[3])};
}

std::size_t mapBytes(int32_t width, int32_t height) {
    return static_cast<std::size_t>(EdgeFlagMap::rowCells(width)) *
           static_cast<std::size_t>(EdgeFlagMap::rowCount(height));
}

/// Dirty, as a map must be able to find it.
PF_EffectWorld mapWorld(std::vector<uint8_t>& memory, int32_t width, int32_t height) {
    PF_EffectWorld world = {};
    world.width = EdgeFlagMap::rowCells(width) / 4;
    world.height = EdgeFlagMap::rowCount(height);
    world.rowbytes = EdgeFlagMap::rowCells(width);
    world.data = static_cast<PF_PixelPtr>(static_cast<void*>(memory.data()));
    return world;
}

int32_t bytesOf(PF_PixelFormat format) {
    if (format == PF_PixelFormat_ARGB32) {
        return sizeof(PF_Pixel);
    }
    return format == PF_PixelFormat_ARGB64 ? sizeof(PF_Pixel16) : sizeof(PF_PixelFloat);
}

} // namespace

MarkedCell transposed(const MarkedCell& cell) {
    return {cell.y, cell.x, (cell.flags & 12) | (cell.flags & 1) << 1 | (cell.flags & 2) >> 1};
}

HandMap::HandMap(int32_t width, int32_t height, const std::vector<MarkedCell>& cells)
    : memory_(mapBytes(width, height), kPadding), map_(mapWorld(memory_, width, height), width, height) {
    for (const MarkedCell& cell : cells) {
        map_.add(cell.x, cell.y, cell.flags);
    }
}

HandPicture::HandPicture(PF_PixelFormat format, int32_t width, int32_t height, int32_t padding, bool bottomUp)
    : format_(format), pixelBytes_(bytesOf(format)),
      memoryBytes_(
          static_cast<std::size_t>((height - 1) * (width * pixelBytes_ + padding) + width * pixelBytes_)),
      memory_(new uint8_t[memoryBytes_]) {
    std::fill_n(memory_.get(), memoryBytes_, kPadding);
    const int32_t rowbytes = width * pixelBytes_ + padding;
    world_.width = width;
    world_.height = height;
    world_.rowbytes = bottomUp ? -rowbytes : rowbytes;
    world_.data = static_cast<PF_PixelPtr>(
        static_cast<void*>(memory_.get() + (bottomUp ? std::ptrdiff_t{height - 1} * rowbytes : 0)));
}

HandPicture::HandPicture(const PlainPicture& picture, int32_t padding, bool bottomUp)
    : HandPicture(picture.format, picture.width, picture.height, padding, bottomUp) {
    for (int32_t y = 0; y < picture.height; ++y) {
        for (int32_t x = 0; x < picture.width; ++x) {
            set(x, y, picture.at(x, y));
        }
    }
}

uint8_t* HandPicture::pixelAt(int32_t x, int32_t y) const {
    return static_cast<uint8_t*>(static_cast<void*>(world_.data)) + std::ptrdiff_t{y} * world_.rowbytes +
           std::ptrdiff_t{x} * pixelBytes_;
}

PlainPixel HandPicture::get(int32_t x, int32_t y) const {
    if (format_ == PF_PixelFormat_ARGB32) {
        return load<uint8_t>(pixelAt(x, y));
    }
    return format_ == PF_PixelFormat_ARGB64 ? load<uint16_t>(pixelAt(x, y)) : load<float>(pixelAt(x, y));
}

void HandPicture::set(int32_t x, int32_t y, const PlainPixel& pixel) {
    if (format_ == PF_PixelFormat_ARGB32) {
        store<uint8_t>(pixelAt(x, y), pixel);
    } else if (format_ == PF_PixelFormat_ARGB64) {
        store<uint16_t>(pixelAt(x, y), pixel);
    } else {
        store<float>(pixelAt(x, y), pixel);
    }
}

PlainPicture HandPicture::picture() const {
    PlainPicture picture(format_, world_.width, world_.height);
    for (int32_t y = 0; y < picture.height; ++y) {
        for (int32_t x = 0; x < picture.width; ++x) {
            picture.at(x, y) = get(x, y);
        }
    }
    return picture;
}

bool HandPicture::paddingIsUntouched() const {
    const auto used = static_cast<std::size_t>(world_.width * pixelBytes_);
    const auto row = static_cast<std::size_t>(std::abs(world_.rowbytes));
    for (std::size_t i = 0; i < memoryBytes_; ++i) {
        if (i % row >= used && memory_[i] != kPadding) {
            return false;
        }
    }
    return true;
}

} // namespace kovalune::test
