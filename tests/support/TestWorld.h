// A world of the reference host, with guards, owned by a test.
#pragma once

#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"
#include "tests/support/StrictHost.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kovalune::test {

class TestWorld {
public:
    /// Transparent black. The rows are as long as the host's options say.
    TestWorld(StrictHost& host, PF_PixelFormat format, int32_t width, int32_t height);
    ~TestWorld();
    TestWorld(const TestWorld&) = delete;
    TestWorld& operator=(const TestWorld&) = delete;

    PF_EffectWorld* get() { return &world_; }
    const PF_EffectWorld& world() const { return world_; }
    PF_PixelFormat format() const { return format_; }
    int32_t width() const { return world_.width; }
    int32_t height() const { return world_.height; }

    /// `Pixel` is the format's.
    template <class Pixel>
    Pixel& at(int32_t x, int32_t y) const {
        auto* const row = static_cast<uint8_t*>(static_cast<void*>(world_.data)) +
                          static_cast<std::ptrdiff_t>(y) * world_.rowbytes;
        return static_cast<Pixel*>(static_cast<void*>(row))[x];
    }

private:
    host::HostState& host_;
    PF_PixelFormat format_;
    PF_EffectWorld world_ = {};
};

/// The rectangle that is the whole of a picture.
inline FrameRect wholeRect(int32_t width, int32_t height) {
    return {0, 0, static_cast<int16_t>(height), static_cast<int16_t>(width)};
}

inline FrameRect rectAt(int32_t left, int32_t top, int32_t width, int32_t height) {
    return {static_cast<int16_t>(top), static_cast<int16_t>(left), static_cast<int16_t>(top + height),
            static_cast<int16_t>(left + width)};
}

} // namespace kovalune::test
