// Whole frames through the entry point, compared to the last bit with frames from an independent, naive
// reading of the same rules: however the host spreads the work, whatever its rows look like, linked in or
// loaded, on both roads.

#include "tests/vectors/VectorFile.h"

#include "host/EffectModule.h"
#include "host/judge/JudgedHost.h"
#include "hostapi/EntryPoint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace kovalune::test {
namespace {

using host::EffectModule;
using host::Image;
using host::ImageView;
using host::RenderFlow;
using host::RenderResult;
using host::Session;
using host::judge::JudgedHost;
using host::judge::JudgeOptions;

class FrameVectors : public testing::TestWithParam<std::string> {
protected:
    static void renderAndCompare(const FrameVector& vector, const JudgeOptions& options, EffectModule& module,
                                 RenderFlow flow = RenderFlow::kSmart) {
        JudgedHost host(options);
        {
            Session session(host, module);
            ASSERT_TRUE(session.setupResult().ok()) << session.setupResult().returnMsg;
            vector.applyTo(session);
            Image output;
            host::RenderRequest request = vector.request();
            request.flow = flow;
            const RenderResult result = session.render(vector.input, output, request);
            ASSERT_TRUE(result.ok()) << result.code << ": " << result.returnMsg;
            EXPECT_EQ(firstDifference(output, vector.expected), "");
        }
        if (flow == RenderFlow::kSmart) {
            // The pre-render leaves its parameters checked out by design.
            host::judge::AuditReport report = host.audit();
            report.paramCheckouts = 0;
            EXPECT_TRUE(report.clean()) << report.text();
        } else {
            EXPECT_TRUE(host.audit().clean()) << host.audit().text();
        }
    }

    static void renderAndCompare(const FrameVector& vector, const JudgeOptions& options,
                                 RenderFlow flow = RenderFlow::kSmart) {
        EffectModule module = EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
        renderAndCompare(vector, options, module, flow);
    }

    static FrameVector vector() {
        return readFrameVector(std::filesystem::path(KOVALUNE_VECTORS) / GetParam());
    }

    static JudgeOptions auditedOptions(int iterations) {
        JudgeOptions options;
        options.audit = true;
        options.poisonNewWorlds = true;
        options.iterations = iterations;
        return options;
    }
};

TEST_P(FrameVectors, MatchOnEveryNumberOfThreads) {
    const FrameVector frame = vector();
    for (int threads = 1; threads <= 8; ++threads) {
        SCOPED_TRACE("threads: " + std::to_string(threads));
        JudgeOptions options = auditedOptions(frame.iterations());
        options.threads = threads;
        renderAndCompare(frame, options);
    }
}

TEST_P(FrameVectors, MatchForEveryNumberOfIterationsInShuffledOrderOnThreads) {
    const FrameVector frame = vector();
    for (int iterations = 1; iterations <= 8; ++iterations) {
        SCOPED_TRACE("iterations: " + std::to_string(iterations));
        JudgeOptions options = auditedOptions(iterations);
        options.threads = 3;
        options.shuffleIterations = true;
        options.shuffleSeed = static_cast<uint64_t>(iterations) * 7919;
        renderAndCompare(frame, options);
    }
}

TEST_P(FrameVectors, MatchInWorldsWithLongRowsThatStartAnywhere) {
    const FrameVector frame = vector();
    for (const int padding : {4, 20, 64, 1000}) {
        SCOPED_TRACE("padding: " + std::to_string(padding));
        JudgeOptions options = auditedOptions(frame.iterations());
        options.threads = 2;
        options.rowPadding = padding;
        options.dataOffset = padding == 20 ? 4 : 0;
        renderAndCompare(frame, options);
    }
}

/// A picture in a caller's memory, with 16 bytes of something else before each row and after the last.
class ForeignPicture {
public:
    /// From the bottom row up, or from the top row down.
    ForeignPicture(const Image& image, bool bottomUp) : gapped_(image.rowBytes() + kGap) {
        const auto height = static_cast<std::size_t>(image.height());
        bytes_.assign(gapped_ * height + kGap, kBetween);
        const auto distance = static_cast<std::ptrdiff_t>(gapped_);
        std::byte* const first = bytes_.data() + kGap + (bottomUp ? gapped_ * (height - 1) : 0);
        view = {image.format(), image.width(), image.height(), first, bottomUp ? -distance : distance};
        for (A_long y = 0; y < image.height(); ++y) {
            std::copy_n(image.row(y), image.rowBytes(), view.row(y));
        }
    }

    Image image() const {
        Image image(view.format, view.width, view.height);
        for (A_long y = 0; y < image.height(); ++y) {
            std::copy_n(view.row(y), image.rowBytes(), image.row(y));
        }
        return image;
    }

    bool gapsUntouched() const {
        for (std::size_t gap = 0; gap < bytes_.size(); gap += gapped_) {
            if (std::any_of(bytes_.begin() + static_cast<std::ptrdiff_t>(gap),
                            bytes_.begin() + static_cast<std::ptrdiff_t>(gap + kGap),
                            [](std::byte byte) { return byte != kBetween; })) {
                return false;
            }
        }
        return true;
    }

    ImageView view;

private:
    static constexpr std::size_t kGap = 16;
    static constexpr std::byte kBetween{0x77};

    std::size_t gapped_;
    std::vector<std::byte> bytes_;
};

TEST_P(FrameVectors, MatchInTheCallersMemoryWithNegativeRowBytes) {
    const FrameVector frame = vector();
    JudgeOptions options = auditedOptions(frame.iterations());
    options.threads = 2;
    JudgedHost host(options);
    EffectModule module = EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
    Session session(host, module);
    frame.applyTo(session);
    constexpr std::array<std::pair<bool, bool>, 3> kDirections{{{true, true}, {true, false}, {false, true}}};
    for (const auto& [inputUp, outputUp] : kDirections) {
        for (const RenderFlow flow : {RenderFlow::kSmart, RenderFlow::kLegacy}) {
            SCOPED_TRACE(testing::Message() << "bottom up: " << inputUp << ", " << outputUp);
            const ForeignPicture input(frame.input, inputUp);
            const ForeignPicture output(
                Image(frame.input.format(), frame.input.width(), frame.input.height()), outputUp);
            host::RenderRequest request = frame.request();
            request.flow = flow;
            const RenderResult result = session.render(input.view, output.view, request);
            ASSERT_TRUE(result.ok()) << result.code << ": " << result.returnMsg;
            EXPECT_EQ(firstDifference(output.image(), frame.expected), "");
            EXPECT_EQ(firstDifference(input.image(), frame.input), "");
            EXPECT_TRUE(input.gapsUntouched());
            EXPECT_TRUE(output.gapsUntouched());
        }
    }
    host::judge::AuditReport report = host.audit();
    report.paramCheckouts = 0;
    EXPECT_TRUE(report.clean()) << report.text();
}

TEST_P(FrameVectors, MatchThroughTheOneCommandOfOlderHosts) {
    const FrameVector frame = vector();
    renderAndCompare(frame, auditedOptions(frame.iterations()), RenderFlow::kLegacy);
}

TEST_P(FrameVectors, MatchInHostsWhoseRecordsAreLonger) {
    const FrameVector frame = vector();
    JudgeOptions options = auditedOptions(frame.iterations());
    options.extraRecordBytes = 32;
    for (const bool older : {false, true}) {
        if (older) {
            options.withheldSuites = {{kPFWorldSuite, kPFWorldSuiteVersion2}};
        }
        if (older && frame.input.format() == PF_PixelFormat_ARGB128) {
            continue; // such hosts have no float worlds
        }
        for (const RenderFlow flow : {RenderFlow::kSmart, RenderFlow::kLegacy}) {
            renderAndCompare(frame, options, flow);
        }
    }
}

TEST_P(FrameVectors, MatchThroughTheLoadedPlugIn) {
    const FrameVector frame = vector();
    JudgeOptions options = auditedOptions(frame.iterations());
    for (const RenderFlow flow : {RenderFlow::kSmart, RenderFlow::kLegacy}) {
        EffectModule module = EffectModule::load(KOVALUNE_PLUGIN);
        renderAndCompare(frame, options, module, flow);
    }
}

TEST(LongerRecords, AreBorneByTheGreyingOfControlsToo) {
    const auto greyed = [](int extraBytes) {
        JudgeOptions options;
        options.audit = true;
        options.extraRecordBytes = extraBytes;
        JudgedHost host(options);
        EffectModule module = EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
        Session session(host, module);
        EXPECT_TRUE(session.updateParamsUI().ok());
        EXPECT_TRUE(host.audit().clean()) << host.audit().text();
        std::vector<A_long> flags;
        for (int index = 0; index < static_cast<int>(session.params().size()); ++index) {
            flags.push_back(session.uiFlags(index));
        }
        return flags;
    };
    EXPECT_EQ(greyed(0), greyed(32));
}

std::string testName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, FrameVectors, testing::ValuesIn(vectorNames(KOVALUNE_VECTORS)), testName);

} // namespace
} // namespace kovalune::test
