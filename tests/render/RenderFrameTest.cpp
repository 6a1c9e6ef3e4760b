// Frames as tools ask for them: each request with its own progress, its own end and its own counts.

#include "render/RenderFrame.h"
#include "render/Settings.h"
#include "text/Failure.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>

namespace kovalune::test {

using namespace render;

namespace {

/// A field of the first colour that the effect looks for, with a border of another one.
host::Image drawing() {
    host::Image image(PF_PixelFormat_ARGB32, 24, 16);
    for (A_long y = 0; y < image.height(); ++y) {
        for (A_long x = 0; x < image.width(); ++x) {
            const bool border = x < 4 || y < 4;
            image.at<PF_Pixel>(x, y) = border ? PF_Pixel{255, 0, 0, 0} : PF_Pixel{255, 50, 100, 180};
        }
    }
    return image;
}

/// Blurs what has that colour.
class RenderFrame : public testing::Test {
protected:
    RenderFrame() {
        setParameter(effect_.session(), "Color 1", "50,100,180");
        setParameter(effect_.session(), "Blur Amount", "5");
    }

    OpenEffect effect_{1, Defaults::kFactory};
    const host::Image image_ = drawing();
};

TEST_F(RenderFrame, TellsItsProgressAndCountsWhatItSelects) {
    std::atomic<int> calls{0};
    FrameReport counts;
    FrameRequest request;
    request.onProgress = [&calls](int, int) {
        ++calls;
        return true;
    };
    request.counts = &counts;
    const host::Image result = renderFrame(effect_, image_, request);
    EXPECT_EQ(result.width(), image_.width());
    EXPECT_GT(calls.load(), 0);
    EXPECT_EQ(counts.stages[0].allSelected(), 20 * 12);
}

TEST_F(RenderFrame, IsGivenUpWhereTheRequestSaysSo) {
    FrameRequest request;
    request.onProgress = [](int, int) { return false; };
    EXPECT_THROW(renderFrame(effect_, image_, request), text::Failure);
    request.onProgress = nullptr;
    EXPECT_NO_THROW(renderFrame(effect_, image_, request)) << "the end of one frame is not that of the next";
}

TEST_F(RenderFrame, OfTwoAtOnceEachHasItsOwnProgressAndEnd) {
    std::optional<text::FailureKind> end;
    std::thread other([&] {
        FrameRequest request;
        request.onProgress = [](int, int) { return false; };
        for (int round = 0; round < 20; ++round) {
            try {
                renderFrame(effect_, image_, request);
                ADD_FAILURE() << "a frame that is given up came to its end";
            } catch (const text::Failure& failure) {
                end = failure.kind();
            }
        }
    });
    const host::Image alone = renderFrame(effect_, image_, {});
    for (int round = 0; round < 20; ++round) {
        int calls = 0;
        FrameRequest request;
        request.onProgress = [&calls](int, int) {
            ++calls;
            return true;
        };
        EXPECT_TRUE(renderFrame(effect_, image_, request) == alone);
        EXPECT_GT(calls, 0);
    }
    other.join();
    EXPECT_EQ(end, text::FailureKind::kEffect);
}

TEST_F(RenderFrame, OfNoPixelsIsRefusedByName) {
    FrameRequest request;
    request.name = "nothing.png";
    try {
        renderFrame(effect_, host::Image(PF_PixelFormat_ARGB32, 0, 0), request);
        ADD_FAILURE() << "a frame without pixels was rendered";
    } catch (const text::Failure& failure) {
        EXPECT_NE(std::string(failure.what()).find("'nothing.png'"), std::string::npos) << failure.what();
    }
}

} // namespace
} // namespace kovalune::test
