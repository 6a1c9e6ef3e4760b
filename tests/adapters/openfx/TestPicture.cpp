#include "tests/adapters/openfx/TestPicture.h"

#include "hostapi/Constants.h"
#include "render/samples/SampleScale.h"

#include <array>
#include <cstring>

namespace kovalune::test {

namespace {

constexpr std::byte kGuard{0xC3};
constexpr std::ptrdiff_t kGuardBytes = 256;

std::size_t sampleBytesOf(const std::string& depth) {
    return depth == "OfxBitDepthByte" ? 1 : depth == "OfxBitDepthFloat" ? 4 : 2;
}

std::size_t samplesOf(const std::string& components) {
    return components == "OfxImageComponentRGBA" ? 4 : components == "OfxImageComponentRGB" ? 3 : 1;
}

template <class File, class Host>
struct Turned {
    static void in(std::byte* to, const std::byte* from, std::size_t samples) {
        std::array<typename Host::Sample, 4> argb;
        std::memcpy(&argb, from, sizeof argb);
        const std::array<std::size_t, 4> order = {1, 2, 3, 0};
        for (std::size_t i = 0; i < samples; ++i) {
            const auto sample = samples::rescaled<Host, File>(argb[order[i]]);
            std::memcpy(to + i * sizeof sample, &sample, sizeof sample);
        }
    }
    static void out(std::byte* to, const std::byte* from, std::size_t samples) {
        std::array<typename File::Sample, 4> rgba = {};
        rgba[3] = samples::rescaled<samples::FileScale8, File>(255);
        std::memcpy(&rgba, from, samples * sizeof rgba[0]);
        const std::array<typename Host::Sample, 4> argb = {
            samples::rescaled<File, Host>(rgba[3]), samples::rescaled<File, Host>(rgba[0]),
            samples::rescaled<File, Host>(rgba[1]), samples::rescaled<File, Host>(rgba[2])};
        std::memcpy(to, &argb, sizeof argb);
    }
};

using Turned8 = Turned<samples::FileScale8, samples::HostScale8>;
using Turned16 = Turned<samples::FileScale16, samples::HostScale16>;
using Turned32 = Turned<samples::FloatBitsScale, samples::HostScale32>;

} // namespace

TestPicture::TestPicture(const PictureForm& form, int width, int height)
    : form_(form), width_(width), height_(height), sampleBytes_(sampleBytesOf(form.depth)),
      samples_(samplesOf(form.components)),
      bytes_(static_cast<std::size_t>(rowStep() * height + 2 * kGuardBytes + form.offset), kGuard),
      before_(bytes_) {}

std::byte* TestPicture::at(int x, int y) {
    const std::ptrdiff_t row = form_.isTopFirst ? y : height_ - 1 - y;
    return bytes_.data() + kGuardBytes + form_.offset + row * rowStep() +
           static_cast<std::ptrdiff_t>(pixelBytes()) * x;
}

void TestPicture::fill(const host::Image& image) {
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            const std::byte* const from = image.row(y) + static_cast<std::size_t>(x) * 4 * sampleBytes_;
            if (sampleBytes_ == 1) {
                Turned8::in(at(x, y), from, samples_);
            } else if (sampleBytes_ == 2) {
                Turned16::in(at(x, y), from, samples_);
            } else {
                Turned32::in(at(x, y), from, samples_);
            }
        }
    }
    before_ = bytes_;
}

host::Image TestPicture::image() const {
    const PF_PixelFormat format = sampleBytes_ == 1   ? PF_PixelFormat_ARGB32
                                  : sampleBytes_ == 2 ? PF_PixelFormat_ARGB64
                                                      : PF_PixelFormat_ARGB128;
    host::Image image(format, width_, height_);
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            std::byte* const to = image.row(y) + static_cast<std::size_t>(x) * 4 * sampleBytes_;
            if (sampleBytes_ == 1) {
                Turned8::out(to, at(x, y), samples_);
            } else if (sampleBytes_ == 2) {
                Turned16::out(to, at(x, y), samples_);
            } else {
                Turned32::out(to, at(x, y), samples_);
            }
        }
    }
    return image;
}

bool TestPicture::isGuardIntact() const {
    std::vector<bool> isPixel(bytes_.size());
    for (int y = 0; y < height_; ++y) {
        const auto first = static_cast<std::size_t>(at(0, y) - bytes_.data());
        std::fill_n(isPixel.begin() + static_cast<std::ptrdiff_t>(first),
                    pixelBytes() * static_cast<std::size_t>(width_), true);
    }
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (!isPixel[i] && bytes_[i] != kGuard) {
            return false;
        }
    }
    return true;
}

} // namespace kovalune::test
