// The whole smoothing written out plainly, as its rules stand: every format and mode in one place, every table line by
// line, no pointers. Reading or writing where the rules never go fails the test.
#pragma once

#include "effect/smoothing/SmoothBoundaries.h"
#include "tests/support/PlainPicture.h"

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

namespace kovalune::test {

/// How often each pattern acted, by name.
using PatternCounts = std::map<std::string_view, int>;

/// One falling weight. The integer formats keep whole numbers in the fields, the float format single precision.
struct PlainRamp {
    bool finished = false;
    double peak = 0.0;
    double level = 0.0;
    double step = 0.0;
    int32_t curve = 0;
};

/// The flags of a picture, one byte a pixel, 0 outside.
struct PlainFlags {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<uint8_t> cells;

    PlainFlags(int32_t w, int32_t h);

    /// Fails the test for a cell that no rule may ask for: above the row over the picture, below the row under it, or
    /// further aside than the margins.
    uint8_t at(int32_t x, int32_t y) const;
    bool has(int32_t x, int32_t y, int bits) const { return (at(x, y) & bits) != 0; }
    bool lacks(int32_t x, int32_t y, int bits) const { return (at(x, y) & bits) == 0; }
    void set(int32_t x, int32_t y, int bits);
};

bool plainPixelsDiffer(PF_PixelFormat format, const PlainPixel& a, const PlainPixel& b, int32_t threshold);

PlainFlags plainFlagMap(const PlainPicture& picture, int32_t threshold);

/// `weight` on the format's scale: whole numbers 0 to 65535, or 0 to 1.
void plainBlend(PF_PixelFormat format, PlainPixel& target, const PlainPixel& colour, double weight);

double plainNextWeight(PF_PixelFormat format, PlainRamp& ramp);

/// The pixel with its alpha at 0 where the key says so.
PlainPixel plainKeyed(const SmoothParams& params, PlainPixel pixel);

/// The filling of the destination in any mode.
void plainFirstFill(const SmoothParams& params, const PlainPicture& source, PlainPicture& destination);

class PlainSmooth {
public:
    /// Of `params` the worlds are not used.
    PlainSmooth(const SmoothParams& params, const PlainPicture& source, PatternCounts& counts);
    /// The same with flags from elsewhere in place of the picture's own.
    PlainSmooth(const SmoothParams& params, const PlainPicture& source, const PlainFlags& flags,
                PatternCounts& counts);

    PlainPicture run();

private:
    enum Side { kLeft, kRight, kUp, kDown };

    void visit(int32_t x, int32_t y);
    void leftOfStep(int32_t x, int32_t y);
    void rightOfStep(int32_t x, int32_t y);
    void acrossStep(int32_t x, int32_t y);
    void aboveStep(int32_t x, int32_t y);
    void belowStep(int32_t x, int32_t y);

    int32_t measureRunLeft(int32_t x, int32_t y);
    int32_t measureRunRight(int32_t x, int32_t y);
    int32_t measureRunUp(int32_t x, int32_t y);
    int32_t measureRunDown(int32_t x, int32_t y);
    int32_t measureTaperLeft(int32_t x, int32_t y);
    int32_t measureTaperRight(int32_t x, int32_t y);
    int32_t measureTaperUp(int32_t x, int32_t y);
    int32_t measureTaperDown(int32_t x, int32_t y);
    int32_t longest(int32_t a, int32_t b);
    int32_t compressed(int32_t n);
    bool isIsolatedSquare(Side side, int32_t x, int32_t y);
    int32_t balancedStrength(Side side, int32_t own, int32_t far, int32_t x, int32_t y);

    double rampStep(int32_t stretch, int32_t n) const;
    PlainRamp runRamp(int32_t stretch, int32_t n) const;
    PlainRamp taperRamp(int32_t n) const;
    void blendRunLeft(int32_t x, int32_t y, PlainRamp ramp);
    void blendRunRight(int32_t x, int32_t y, PlainRamp ramp);
    void blendRunUp(int32_t x, int32_t y, PlainRamp ramp);
    void blendRunDown(int32_t x, int32_t y, PlainRamp ramp);

    bool traceVerticalDiagonals(int32_t x, int32_t y);
    bool traceHorizontalDiagonals(int32_t x, int32_t y);
    int32_t staircase(int32_t cx, int32_t cy, int32_t moveX, int32_t moveY, int carry, int stop,
                      int32_t besideX, int32_t besideY);
    PlainRamp innerRamp(int32_t n) const;
    PlainRamp outerRamp(int32_t n) const;

    void mendRightStep(int32_t x, int32_t y);
    void mendDownStep(int32_t x, int32_t y);
    void mendDownRightStep(int32_t x, int32_t y);
    void nubOrRestore(int32_t x, int32_t y);
    bool nubFires(int32_t x, int32_t y);
    void softenNub(int32_t x, int32_t y);
    void softenNub8(const std::vector<PlainPixel>& neighbours, PlainPixel& own);
    void softenNubFloat(const std::vector<PlainPixel>& neighbours, PlainPixel& own);
    void restore(int32_t x, int32_t y);
    void shouldersOfVerticalStep(int32_t x, int32_t y);
    void shouldersOfHorizontalStep(int32_t x, int32_t y);

    bool isFloat() const { return params_.pixelFormat == PF_PixelFormat_ARGB128; }
    bool has(int32_t x, int32_t y, int bits) const { return flags_.has(x, y, bits); }
    bool lacks(int32_t x, int32_t y, int bits) const { return flags_.lacks(x, y, bits); }
    PlainPixel src(int32_t x, int32_t y);
    PlainPixel& dst(int32_t x, int32_t y);
    void take(int32_t x, int32_t y, const PlainPixel& colour, double weight);
    void takeBack(int32_t x, int32_t y, double weight) { take(x, y, src(x, y), weight); }
    bool fired(const char* pattern, bool holds = true);

    SmoothParams params_;
    const PlainPicture& source_;
    PlainPicture destination_;
    PlainFlags flags_;
    PatternCounts& counts_;
    int32_t width_;
    int32_t height_;
    int32_t curveThird_;
    double crossWeight_;
    double smallWeight_;
    double half_;
    double threeQuarters_;
    double sixth_;
    bool leftDone_ = false;
    bool rightDone_ = false;
    bool tapered_ = false;
    PlainPixel nowhere_;
};

} // namespace kovalune::test
