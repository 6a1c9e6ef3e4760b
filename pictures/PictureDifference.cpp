#include "pictures/PictureDifference.h"

#include "effect/share/StandardParts.h"
#include "pictures/PixelValues.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace kovalune::pictures {

namespace {

constexpr std::size_t kNoChannel = 4; // alpha that a picture does not have

/// A channel of the comparison, and which sample of a pixel it is in each picture.
struct ComparedChannel {
    const char* name;
    std::size_t inA;
    std::size_t inB;
};

/// Grey stands for all three colours.
std::size_t placeOf(std::size_t color, Channels channels) {
    return isGrey(channels) ? 0 : color;
}

std::size_t alphaPlace(Channels channels) {
    return hasAlpha(channels) ? channelCount(channels) - 1 : kNoChannel;
}

std::vector<ComparedChannel> comparedChannels(Channels a, Channels b) {
    std::vector<ComparedChannel> compared;
    if (isGrey(a) && isGrey(b)) {
        compared.push_back({"grey", 0, 0});
    } else {
        compared.push_back({"red", placeOf(0, a), placeOf(0, b)});
        compared.push_back({"green", placeOf(1, a), placeOf(1, b)});
        compared.push_back({"blue", placeOf(2, a), placeOf(2, b)});
    }
    if (hasAlpha(a) || hasAlpha(b)) {
        compared.push_back({"alpha", alphaPlace(a), alphaPlace(b)});
    }
    return compared;
}

double valueAt(const Picture& picture, std::size_t pixel, std::size_t place) {
    return place == kNoChannel ? whiteOf(picture.sampleType)
                               : sampleValue(picture, pixel * channelCount(picture.channels) + place);
}

/// Samples and whites are of so few bits that the products are exact.
bool sameValue(double a, double whiteA, double b, double whiteB) {
    if (std::isnan(a) || std::isnan(b)) {
        return bitCast<uint64_t>(a) == bitCast<uint64_t>(b);
    }
    return a * whiteB == b * whiteA;
}

/// Of 255. For whole numbers the products are exact as long as the tolerance has few digits.
bool isBeyond(double tolerance, double a, double whiteA, double b, double whiteB) {
    constexpr double kOf = 255.0;
    return !(std::abs(a * whiteB - b * whiteA) * kOf <= tolerance * whiteA * whiteB);
}

/// NaN outweighs every number.
void keepLarger(double& largest, double other) {
    if (std::isnan(other) || other > largest) {
        largest = other;
    }
}

class Comparing {
public:
    Comparing(const Picture& a, const Picture& b, double tolerance)
        : a_(a), b_(b), tolerance_(tolerance), channels_(comparedChannels(a.channels, b.channels)),
          whiteA_(whiteOf(a.sampleType)), whiteB_(whiteOf(b.sampleType)) {
        for (const ComparedChannel& channel : channels_) {
            result_.largest.push_back({channel.name, 0.0, 0.0});
        }
    }

    /// Whether the bytes can tell that samples are the same.
    bool sameForm() const { return a_.channels == b_.channels && a_.sampleType == b_.sampleType; }

    bool lookAt(std::size_t pixel) {
        bool differs = false;
        bool beyond = false;
        for (std::size_t i = 0; i < channels_.size(); ++i) {
            const double a = valueAt(a_, pixel, channels_[i].inA);
            const double b = valueAt(b_, pixel, channels_[i].inB);
            if (sameValue(a, whiteA_, b, whiteB_)) {
                continue;
            }
            differs = true;
            beyond = beyond || isBeyond(tolerance_, a, whiteA_, b, whiteB_);
            keepLarger(result_.largest[i].units, std::abs(a - b));
            keepLarger(result_.largest[i].fraction, std::abs(a / whiteA_ - b / whiteB_));
        }
        if (beyond && result_.pixels++ == 0) {
            result_.first = pixel;
        }
        result_.within += differs && !beyond ? 1 : 0;
        return beyond;
    }

    PictureDifference result() const { return result_; }

private:
    const Picture& a_;
    const Picture& b_;
    double tolerance_;
    std::vector<ComparedChannel> channels_;
    double whiteA_;
    double whiteB_;
    PictureDifference result_;
};

} // namespace

PictureDifference differenceOf(const Picture& a, const Picture& b,
                               const std::function<void(std::size_t pixel)>& differing, double tolerance) {
    Comparing comparing(a, b, tolerance);
    const std::size_t rowBytes = a.rowBytes();
    for (std::size_t y = 0; y < a.height; ++y) {
        const std::size_t start = y * rowBytes;
        if (comparing.sameForm() &&
            std::memcmp(a.samples.data() + start, b.samples.data() + start, rowBytes) == 0) {
            continue;
        }
        for (std::size_t pixel = y * a.width; pixel < (y + 1) * a.width; ++pixel) {
            if (comparing.lookAt(pixel)) {
                differing(pixel);
            }
        }
    }
    return comparing.result();
}

} // namespace kovalune::pictures
