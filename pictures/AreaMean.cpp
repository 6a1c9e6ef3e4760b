#include "pictures/AreaMean.h"

#include "render/samples/SampleScale.h"

#include <algorithm>
#include <vector>

namespace kovalune::pictures {

namespace {

/// Calls `part(small, weight)` for each of the `small` cells that cell `index` of `large` lies in, with its share in
/// units of which a cell of `small` has `large` altogether.
template <class Part>
void forEachPart(uint32_t index, uint32_t large, uint32_t small, const Part& part) {
    uint64_t start = uint64_t{index} * small;
    const uint64_t end = start + small;
    while (start < end) {
        const uint64_t cell = start / large;
        const uint64_t next = std::min(end, (cell + 1) * large);
        part(static_cast<uint32_t>(cell), static_cast<double>(next - start));
        start = next;
    }
}

template <class Scale>
class Shrinking {
public:
    Shrinking(const Picture& picture, uint32_t width, uint32_t height)
        : picture_(picture), channels_(channelCount(picture.channels)), alpha_(hasAlpha(picture.channels)) {
        result_.width = width;
        result_.height = height;
        result_.channels = picture.channels;
        result_.sampleType = picture.sampleType;
        result_.samples.resize(result_.byteCount());
        sums_.assign(std::size_t{width} * channels_, 0.0);
        row_.assign(sums_.size(), 0.0);
    }

    Picture result() && {
        uint32_t filled = 0; // the row that the sums are of
        for (uint32_t y = 0; y < picture_.height; ++y) {
            addUpRow(y);
            forEachPart(y, picture_.height, result_.height, [&](uint32_t row, double weight) {
                if (row != filled) {
                    storeRow(filled);
                    filled = row;
                }
                for (std::size_t i = 0; i < sums_.size(); ++i) {
                    sums_[i] += weight * row_[i];
                }
            });
        }
        storeRow(filled);
        return std::move(result_);
    }

private:
    using Sample = typename Scale::Sample;

    void addUpRow(uint32_t y) {
        std::fill(row_.begin(), row_.end(), 0.0);
        for (uint32_t x = 0; x < picture_.width; ++x) {
            const std::size_t from = (std::size_t{y} * picture_.width + x) * channels_;
            const double cover = alpha_ ? valueAt(from + channels_ - 1) : 1.0;
            forEachPart(x, picture_.width, result_.width, [&](uint32_t column, double weight) {
                const std::size_t to = std::size_t{column} * channels_;
                const std::size_t colors = alpha_ ? channels_ - 1 : channels_;
                for (std::size_t i = 0; cover != 0.0 && i < colors; ++i) {
                    row_[to + i] += weight * cover * valueAt(from + i);
                }
                if (alpha_) {
                    row_[to + channels_ - 1] += weight * cover;
                }
            });
        }
    }

    double valueAt(std::size_t index) const { return Scale::toDouble(picture_.sample<Sample>(index)); }

    /// And starts the next one.
    void storeRow(uint32_t y) {
        const double area = static_cast<double>(picture_.width) * static_cast<double>(picture_.height);
        for (std::size_t pixel = 0; pixel < result_.width; ++pixel) {
            const std::size_t first = pixel * channels_;
            const double cover = alpha_ ? sums_[first + channels_ - 1] : area;
            for (std::size_t i = 0; i < channels_; ++i) {
                const bool isAlpha = alpha_ && i == channels_ - 1;
                const double mean = isAlpha ? cover / area : cover == 0.0 ? 0.0 : sums_[first + i] / cover;
                result_.setSample(std::size_t{y} * result_.width * channels_ + first + i,
                                  Scale::fromDouble(mean));
            }
        }
        std::fill(sums_.begin(), sums_.end(), 0.0);
    }

    const Picture& picture_;
    const std::size_t channels_;
    const bool alpha_;
    Picture result_;
    std::vector<double> sums_; ///< of a row of the result, colours times alpha
    std::vector<double> row_;  ///< the same of one row of the picture
};

} // namespace

Picture shrunk(const Picture& picture, uint32_t width, uint32_t height) {
    switch (picture.sampleType) {
    case SampleType::kUint8:
        return Shrinking<FileScale8>(picture, width, height).result();
    case SampleType::kUint16:
        return Shrinking<FileScale16>(picture, width, height).result();
    default:
        return Shrinking<FloatScale>(picture, width, height).result();
    }
}

} // namespace kovalune::pictures
