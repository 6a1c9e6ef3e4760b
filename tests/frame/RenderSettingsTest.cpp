#include "effect/share/RenderSettings.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

TEST(RenderSettings, StartWithTheirFixedValues) {
    const RenderSettings record;
    EXPECT_EQ(record.view, 1);
    EXPECT_EQ(record.boundaryScale, 1.5);
    EXPECT_EQ(record.inData, nullptr);
    EXPECT_EQ(record.outData, nullptr);
    EXPECT_EQ(record.inputWorld, nullptr);
    EXPECT_EQ(record.outputWorld, nullptr);
    EXPECT_EQ(record.pixelFormat, 0x66646162); // "badf"
    EXPECT_EQ(record.fromPreRender, 0);
    for (const FrameRect& rect : {record.extentRect, record.originRect}) {
        EXPECT_EQ(rect.top, 0);
        EXPECT_EQ(rect.left, 0);
        EXPECT_EQ(rect.bottom, 0);
        EXPECT_EQ(rect.right, 0);
    }
}

TEST(RenderSettings, StartWithStagesOfZerosButForTheExceptions) {
    const RenderSettings record;
    for (int n = 0; n < 5; ++n) {
        SCOPED_TRACE(n);
        const StageSettings& stage = record.stages[n];
        EXPECT_EQ(stage.enableProcess, n == 0 ? 1 : 0);
        for (int entry = 0; entry < 4; ++entry) {
            EXPECT_EQ(stage.colors[entry].enable, n < 2 && entry < 2 ? 1 : 0) << entry;
            EXPECT_EQ(stage.colors[entry].range, 0.0);
            EXPECT_EQ(stage.colors[entry].color.alpha, 0);
            EXPECT_EQ(stage.colors[entry].color.red, 0);
            EXPECT_EQ(stage.colors[entry].color.green, 0);
            EXPECT_EQ(stage.colors[entry].color.blue, 0);
        }
        EXPECT_EQ(stage.blurAmount, 0.0);
        EXPECT_EQ(stage.repeat, 0);
        EXPECT_EQ(stage.boundaryBlur, 0.0);
        EXPECT_EQ(stage.boundaryBias, 0.0);
        EXPECT_EQ(stage.keepDivision, 0);
        EXPECT_EQ(stage.keepProcess, 0);
        EXPECT_EQ(stage.stageReserved0, 0);
        EXPECT_EQ(stage.stageReserved1, 0);
        EXPECT_EQ(stage.stageReserved2, 0);
        EXPECT_EQ(stage.stageReserved3, 0);
    }
}

} // namespace
} // namespace kovalune::test
