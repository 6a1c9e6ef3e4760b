// Calls that the smoothing refuses and host calls that fail: the code that comes back, and what the
// destination then holds.

#include "tests/reference/PlainSmooth.h"
#include "tests/smoothing/BareHost.h"
#include "tests/smoothing/HandMade.h"
#include "tests/smoothing/SmoothScenes.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

struct FailingCall {
    const char* name;
    PF_PixelFormat format;
    SmoothMode mode;
};

std::vector<FailingCall> allCalls() {
    return {{"Argb8Plain", PF_PixelFormat_ARGB32, SmoothMode::kPlain},
            {"Argb8KeyRemoved", PF_PixelFormat_ARGB32, SmoothMode::kKeyRemoved},
            {"Argb8KeyOnly", PF_PixelFormat_ARGB32, SmoothMode::kKeyOnly},
            {"Argb16Plain", PF_PixelFormat_ARGB64, SmoothMode::kPlain},
            {"Argb16KeyRemoved", PF_PixelFormat_ARGB64, SmoothMode::kKeyRemoved},
            {"Argb16KeyOnly", PF_PixelFormat_ARGB64, SmoothMode::kKeyOnly},
            {"Argb32Plain", PF_PixelFormat_ARGB128, SmoothMode::kPlain},
            {"Argb32KeyRemoved", PF_PixelFormat_ARGB128, SmoothMode::kKeyRemoved},
            {"Argb32KeyOnly", PF_PixelFormat_ARGB128, SmoothMode::kKeyOnly}};
}

class SmoothFailure : public testing::TestWithParam<FailingCall> {
protected:
    SmoothFailure()
        : random_(9), scene_(randomSmoothScene(GetParam().format, GetParam().mode, 9, 7, random_)),
          host_(GetParam().format), source_(scene_.picture), destination_(GetParam().format, 9, 7) {
        params_ = scene_.params;
        params_.strength = 70;
        params_.inData = host_.in();
        params_.srcWorld = &source_.world();
        params_.dstWorld = &destination_.world();
        before_ = destination_.picture();
    }

    bool isPlain() const { return GetParam().mode == SmoothMode::kPlain; }

    PlainPicture firstFill() const {
        PlainPicture fill(GetParam().format, 9, 7);
        plainFirstFill(params_, scene_.picture, fill);
        return fill;
    }

    void expectUntouched() { EXPECT_EQ(difference(before_, destination_.picture()), ""); }

    long thrownCode() const {
        try {
            static_cast<void>(smoothBoundaries(params_));
        } catch (long code) {
            return code;
        }
        return 0;
    }

    Random random_;
    SmoothScene scene_;
    BareHost host_;
    HandPicture source_;
    HandPicture destination_;
    SmoothParams params_;
    PlainPicture before_{PF_PixelFormat_INVALID, 0, 0};
};

INSTANTIATE_TEST_SUITE_P(All, SmoothFailure, testing::ValuesIn(allCalls()),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(SmoothFailure, OfAnUnknownFormatWritesNothing) {
    constexpr PF_PixelFormat kUnknown[] = {PF_PixelFormat_INVALID, static_cast<PF_PixelFormat>(0),
                                           static_cast<PF_PixelFormat>(PF_PixelFormat_ARGB32 ^ 1)};
    for (const PF_PixelFormat format : kUnknown) {
        params_.pixelFormat = format;
        EXPECT_EQ(smoothBoundaries(params_), PF_Err_UNRECOGNIZED_PARAM_TYPE);
        expectUntouched();
    }
}

TEST_P(SmoothFailure, OfAnUnknownFormatComesBeforeThatOfTheSize) {
    HandPicture other(GetParam().format, 8, 7);
    params_.srcWorld = &other.world();
    params_.pixelFormat = PF_PixelFormat_INVALID;
    EXPECT_EQ(smoothBoundaries(params_), PF_Err_UNRECOGNIZED_PARAM_TYPE);
}

TEST_P(SmoothFailure, OfDifferentSizesWritesNothing) {
    for (const auto& [width, height] : {std::pair{8, 7}, {10, 7}, {9, 6}, {9, 8}, {7, 9}}) {
        HandPicture other(GetParam().format, width, height);
        params_.srcWorld = &other.world();
        EXPECT_EQ(smoothBoundaries(params_), PF_Err_BAD_CALLBACK_PARAM) << width << " x " << height;
        expectUntouched();
    }
}

TEST_P(SmoothFailure, OfOneWorldForBothWritesNothing) {
    params_.srcWorld = params_.dstWorld;
    EXPECT_EQ(smoothBoundaries(params_), PF_Err_BAD_CALLBACK_PARAM);
    expectUntouched();
}

TEST_P(SmoothFailure, OfTheCopyEndsThePlainCallWithItsCode) {
    host_.copyCode = PF_Err_OUT_OF_MEMORY;
    if (!isPlain()) {
        EXPECT_EQ(smoothBoundaries(params_), PF_Err_NONE) << "a key mode asks for no copy";
        EXPECT_EQ(host_.copies, 0);
        return;
    }
    EXPECT_EQ(smoothBoundaries(params_), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(host_.worldsMade, 0);
    PlainPicture expected = before_; // the host's copy gave up after its first row
    for (int32_t x = 0; x < 9; ++x) {
        expected.at(x, 0) = scene_.picture.at(x, 0);
    }
    EXPECT_EQ(difference(expected, destination_.picture()), "");
    params_.strength = 0;
    EXPECT_EQ(smoothBoundaries(params_), PF_Err_OUT_OF_MEMORY);
}

TEST_P(SmoothFailure, OfTheMapLeavesTheFirstFill) {
    host_.newWorldCode = PF_Err_OUT_OF_MEMORY;
    EXPECT_EQ(smoothBoundaries(params_), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(difference(firstFill(), destination_.picture()), "");
}

TEST_P(SmoothFailure, OfTheDisposalIsIgnored) {
    host_.disposeCode = PF_Err_INTERNAL_STRUCT_DAMAGED;
    EXPECT_EQ(smoothBoundaries(params_), PF_Err_NONE);
    EXPECT_EQ(host_.worldsAlive(), 0U);
    PatternCounts counts;
    EXPECT_EQ(difference(PlainSmooth(params_, scene_.picture, counts).run(), destination_.picture()), "");
}

TEST_P(SmoothFailure, OfASuiteIsThrown) {
    host_.missingSuite = kPFWorldSuite;
    EXPECT_EQ(thrownCode(), 516);
    EXPECT_EQ(difference(firstFill(), destination_.picture()), "");
    params_.strength = 0;
    EXPECT_EQ(thrownCode(), 0) << "without strength no map is asked for";
}

TEST_P(SmoothFailure, OfTheCopySuiteIsThrownInPlainModeAlone) {
    host_.missingSuite = kPFWorldTransformSuite;
    EXPECT_EQ(thrownCode(), isPlain() ? 516 : 0);
    if (isPlain()) {
        expectUntouched();
    }
}

TEST_P(SmoothFailure, OfAllSuitesIsThrown) {
    host_.in()->pica_basicP = nullptr;
    EXPECT_EQ(thrownCode(), 516);
    expectUntouched();
}

TEST_P(SmoothFailure, DoesNotHappenWithoutStrength) {
    params_.strength = 0;
    host_.newWorldCode = PF_Err_OUT_OF_MEMORY;
    EXPECT_EQ(smoothBoundaries(params_), PF_Err_NONE);
    EXPECT_EQ(difference(firstFill(), destination_.picture()), "");
}

} // namespace
} // namespace kovalune::test
