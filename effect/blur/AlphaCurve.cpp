#include "effect/blur/AlphaCurve.h"

#include "effect/share/ExactMath.h"
#include "effect/share/Integers.h"

#include <limits>
#include <new>

namespace kovalune {
namespace {

constexpr double kPi = 3.141592653589793;
constexpr int32_t kFull16 = Argb16::kFullScale;

// A bias of 100 percent narrows the curve by one step of the format less than full scale, so that its span is never 0.
constexpr int32_t kNarrowest16 = kFull16 - 1;
constexpr float kNarrowest32 = Argb32::kFullScale - std::numeric_limits<float>::epsilon();
static_assert(kNarrowest32 == 0.99999988F && static_cast<double>(kNarrowest32) == 0.9999998807907104);

/// More than `nearCosine` is ever away from the cosine: ten times the rounding of its steps.
constexpr double kCosineError = 1.0e-14;

/// For angles from 0 to half a turn.
double nearCosine(double angle) {
    const double y = angle - kPi / 2.0;
    const double square = y * y;
    double sum = 1.0;
    for (int n = 20; n > 0; n -= 2) {
        sum = 1.0 - sum * square * (1.0 / (n * (n + 1)));
    }
    return -y * sum;
}

double raised(double cosine) {
    return (cosine - 1.0) * -0.5;
}

/// Rises from 0 at `distance` 0 to 1 at `span`, as `rounded` leaves it, which never falls where its argument rises. The exact
/// cosine is called for only where it could make a difference.
template <class Rounded>
auto raisedCosine(double distance, double span, const Rounded& rounded) {
    const double angle = distance / span * kPi;
    if (angle >= 0.0 && angle <= kPi) {
        const double near = nearCosine(angle);
        const auto least = rounded(raised(near + kCosineError));
        if (least == rounded(raised(near - kCosineError))) {
            return least;
        }
    }
    return rounded(raised(exact::cos(angle)));
}

} // namespace

AlphaCurveOf<Argb16>::AlphaCurveOf(double bias) : isRamp_(bias < 0.0) {
    if (isRamp_) {
        rampWidth_ = truncToInt32((bias + 100.0) / 100.0 * kNarrowest16 + 0.5);
        return;
    }
    const float scaled = static_cast<float>(bias) / 100.0F * static_cast<float>(kNarrowest16);
    const auto narrowing = static_cast<uint16_t>(truncToInt32(static_cast<double>(scaled) + 0.5));
    low_ = narrowing / 10;
    high_ = kFull16 - narrowing * 9 / 10;
    span_ = kFull16 - narrowing;
    known_.reset(new (std::nothrow) uint16_t[Argb16::kFullScale]());
}

uint16_t AlphaCurveOf<Argb16>::operator()(uint16_t alpha) {
    return isRamp_ ? onRamp(alpha) : onCosine(alpha);
}

uint16_t AlphaCurveOf<Argb16>::onCosine(uint16_t alpha) {
    if (alpha < low_) {
        return 0;
    }
    if (alpha >= high_) {
        return Argb16::kFullScale;
    }
    if (known_ == nullptr) {
        return static_cast<uint16_t>(cosineAt(alpha));
    }
    uint16_t& known = known_[alpha];
    if (known == 0) {
        known = static_cast<uint16_t>(cosineAt(alpha) + 1);
    }
    return static_cast<uint16_t>(known - 1);
}

int32_t AlphaCurveOf<Argb16>::cosineAt(uint16_t alpha) const {
    return raisedCosine(alpha - low_, span_, [](double level) { return truncToInt32(level * kFull16); });
}

uint16_t AlphaCurveOf<Argb16>::onRamp(uint16_t alpha) const {
    const int32_t below = kFull16 - alpha;
    int32_t fallen = kFull16;
    // A ramp without width leaves nothing, not even an alpha beyond full scale.
    if (below < rampWidth_ && rampWidth_ != 0) {
        const int32_t share = below * kFull16 / rampWidth_;
        fallen = truncToInt32(static_cast<double>(share) + 0.5);
    }
    return static_cast<uint16_t>(kFull16 - fallen);
}

AlphaCurveOf<Argb32>::AlphaCurveOf(double bias) : isRamp_(bias < 0.0) {
    if (isRamp_) {
        rampWidth_ = (bias + 100.0) / 100.0 * static_cast<double>(kNarrowest32);
        return;
    }
    const float narrowing = static_cast<float>(bias) / 100.0F * kNarrowest32;
    low_ = narrowing / 10.0F;
    high_ = 1.0F - narrowing * 9.0F / 10.0F;
    span_ = 1.0F - narrowing;
}

float AlphaCurveOf<Argb32>::operator()(float alpha) const {
    if (isRamp_) {
        const auto below = static_cast<double>(1.0F - alpha);
        const double fallen = below >= rampWidth_ ? 1.0 : below / rampWidth_;
        return static_cast<float>(1.0 - fallen);
    }
    if (alpha < low_) {
        return 0.0F;
    }
    if (alpha >= high_) {
        return 1.0F;
    }
    return raisedCosine(static_cast<double>(alpha - low_), static_cast<double>(span_),
                        [](double level) { return static_cast<float>(level); });
}

} // namespace kovalune
