#include "pictures/Canvas.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace kovalune::pictures {

namespace {

template <class Sample>
constexpr Sample fullOf() {
    if constexpr (std::is_floating_point_v<Sample>) {
        return Sample{1};
    } else {
        return std::numeric_limits<Sample>::max();
    }
}

template <class Sample>
Sample widened(uint8_t value) {
    if constexpr (std::is_floating_point_v<Sample>) {
        return static_cast<Sample>(value) / Sample{255};
    } else {
        return static_cast<Sample>(value * (fullOf<Sample>() / 255));
    }
}

/// `upper` with this alpha over `lower`.
template <class Sample>
Sample over(Sample upper, Sample lower, Sample alpha) {
    constexpr Sample kFull = fullOf<Sample>();
    if constexpr (std::is_floating_point_v<Sample>) {
        return alpha == kFull ? upper : upper * alpha + lower * (kFull - alpha);
    } else {
        const auto sum = uint64_t{upper} * alpha + uint64_t{lower} * uint64_t(kFull - alpha);
        return static_cast<Sample>((sum + kFull / 2) / kFull);
    }
}

/// Calls `work` with a value of the type that samples of `type` have.
template <class Work>
void withSample(SampleType type, const Work& work) {
    if (type == SampleType::kUint8) {
        work(uint8_t{});
    } else if (type == SampleType::kUint16) {
        work(uint16_t{});
    } else {
        work(float{});
    }
}

} // namespace

Canvas::Canvas(uint32_t width, uint32_t height, DrawnColor background, SampleType type) {
    picture_.width = width;
    picture_.height = height;
    picture_.sampleType = type;
    picture_.samples.assign(picture_.byteCount(), 0);
    fill({0, 0, width, height}, background);
}

Area Canvas::cut(const Area& area) const {
    const auto right = std::min<int64_t>(area.left + area.width, picture_.width);
    const auto bottom = std::min<int64_t>(area.top + area.height, picture_.height);
    const int64_t left = std::max<int64_t>(area.left, 0);
    const int64_t top = std::max<int64_t>(area.top, 0);
    return {left, top, std::max<int64_t>(right - left, 0), std::max<int64_t>(bottom - top, 0)};
}

std::size_t Canvas::indexOf(int64_t x, int64_t y) const {
    return (static_cast<std::size_t>(y) * picture_.width + static_cast<std::size_t>(x)) * 3;
}

template <class Sample>
void Canvas::fillOf(const Area& inside, DrawnColor color) {
    const std::array<Sample, 3> channels = {widened<Sample>(color.red), widened<Sample>(color.green),
                                            widened<Sample>(color.blue)};
    for (int64_t y = inside.top; y < inside.top + inside.height; ++y) {
        std::size_t at = indexOf(inside.left, y);
        for (int64_t x = 0; x < inside.width; ++x) {
            for (const Sample channel : channels) {
                picture_.setSample(at++, channel);
            }
        }
    }
}

void Canvas::fill(const Area& area, DrawnColor color) {
    withSample(picture_.sampleType, [&](auto sample) { fillOf<decltype(sample)>(cut(area), color); });
}

void Canvas::checker(const Area& area, int64_t side, DrawnColor first, DrawnColor second) {
    for (int64_t y = 0; y < area.height; y += side) {
        for (int64_t x = 0; x < area.width; x += side) {
            const bool even = (x / side + y / side) % 2 == 0;
            fill({area.left + x, area.top + y, std::min(side, area.width - x),
                  std::min(side, area.height - y)},
                 even ? first : second);
        }
    }
}

template <class Sample>
void Canvas::drawOf(const Picture& picture, int64_t left, int64_t top) {
    const std::size_t channels = channelCount(picture.channels);
    const std::size_t step = isGrey(picture.channels) ? 0 : 1;
    const bool alphaIsThere = hasAlpha(picture.channels);
    const Area inside = cut({left, top, picture.width, picture.height});
    for (int64_t y = inside.top; y < inside.top + inside.height; ++y) {
        std::size_t to = indexOf(inside.left, y);
        std::size_t from = (static_cast<std::size_t>(y - top) * picture.width +
                            static_cast<std::size_t>(inside.left - left)) *
                           channels;
        for (int64_t x = 0; x < inside.width; ++x, from += channels) {
            const auto alpha = alphaIsThere ? picture.sample<Sample>(from + channels - 1) : fullOf<Sample>();
            for (std::size_t channel = 0; channel < 3; ++channel, ++to) {
                const auto upper = picture.sample<Sample>(from + channel * step);
                picture_.setSample(to, over(upper, picture_.sample<Sample>(to), alpha));
            }
        }
    }
}

void Canvas::draw(const Picture& picture, int64_t left, int64_t top) {
    withSample(picture_.sampleType, [&](auto sample) { drawOf<decltype(sample)>(picture, left, top); });
}

} // namespace kovalune::pictures
