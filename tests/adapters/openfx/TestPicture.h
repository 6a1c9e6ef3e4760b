// Pixels as a host hands them out: with guarded bytes around every row, bottom row first or last in memory, anywhere in the
// plane.
#pragma once

#include "adapters/openfx/Interface.h"
#include "host/Image.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kovalune::test {

struct PictureForm {
    std::string depth = "OfxBitDepthByte";
    std::string components = "OfxImageComponentRGBA";
    std::string premultiplication = "OfxImageAlphaUnPremultiplied";
    int padding = 0;         ///< bytes after each row's pixels
    bool isTopFirst = false; ///< in memory, so that the distance of rows is negative
    int left = 0;            ///< of the bounds
    int bottom = 0;
    int offset = 0; ///< bytes by which the first pixel misses an alignment
};

class TestPicture {
public:
    /// Filled with a pattern that no test draws.
    TestPicture(const PictureForm& form, int width, int height);

    const PictureForm& form() const { return form_; }
    int width() const { return width_; }
    int height() const { return height_; }
    openfx::RectI bounds() const {
        return {form_.left, form_.bottom, form_.left + width_, form_.bottom + height_};
    }
    std::size_t pixelBytes() const { return sampleBytes_ * samples_; }
    std::ptrdiff_t rowBytes() const { return form_.isTopFirst ? -rowStep() : rowStep(); }

    /// The first sample of a pixel that is counted from the left and the top.
    std::byte* at(int x, int y);
    const std::byte* at(int x, int y) const { return const_cast<TestPicture*>(this)->at(x, y); }
    std::byte* lowerLeft() { return at(0, height_ - 1); }

    /// Of RGBA with the effect's values of the same depth: 16 bits go to full scale as files do.
    void fill(const host::Image& image);
    /// Pixels that were written by hand count as filled in.
    void keep() { before_ = bytes_; }
    /// Back; of RGB with full alpha.
    host::Image image() const;

    /// Whether all bytes between and around rows are as they were.
    bool isGuardIntact() const;
    /// Whether no pixel has been written since it was made or filled last.
    bool isUntouched() const { return bytes_ == before_; }

    friend bool operator==(const TestPicture& a, const TestPicture& b) { return a.bytes_ == b.bytes_; }

private:
    std::ptrdiff_t rowStep() const {
        return static_cast<std::ptrdiff_t>(pixelBytes()) * width_ + form_.padding;
    }

    PictureForm form_;
    int width_;
    int height_;
    std::size_t sampleBytes_;
    std::size_t samples_;
    std::vector<std::byte> bytes_;
    std::vector<std::byte> before_;
};

} // namespace kovalune::test
