// Whole frames through the entry point, compared to the last bit with frames from an independent, naive
// reading of the same rules: however the host spreads the work, whatever its rows look like, linked in or
// loaded, on both roads.

#include "tests/frames/VectorFile.h"

#include "host/EffectModule.h"
#include "host/Host.h"
#include "hostapi/EntryPoint.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kovalune::test {
namespace {

using host::EffectModule;
using host::Host;
using host::HostOptions;
using host::Image;
using host::RenderFlow;
using host::RenderResult;
using host::Session;

class FrameVectors : public testing::TestWithParam<std::string> {
protected:
    static void renderAndCompare(const FrameVector& vector, const HostOptions& options, EffectModule& module,
                                 RenderFlow flow = RenderFlow::kSmart) {
        Host host(options);
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
            host::AuditReport report = host.audit();
            report.paramCheckouts = 0;
            EXPECT_TRUE(report.clean()) << report.text();
        } else {
            EXPECT_TRUE(host.audit().clean()) << host.audit().text();
        }
    }

    static void renderAndCompare(const FrameVector& vector, const HostOptions& options,
                                 RenderFlow flow = RenderFlow::kSmart) {
        EffectModule module = EffectModule::linked(EntryPointFunc);
        renderAndCompare(vector, options, module, flow);
    }

    static FrameVector vector() {
        return readFrameVector(std::filesystem::path(KOVALUNE_VECTORS) / GetParam());
    }

    static HostOptions auditedOptions(int iterations) {
        HostOptions options;
        options.audit = true;
        options.poisonNewWorlds = true;
        options.iterations = iterations;
        options.globalSetdownAtEnd = false; // the linked effect serves many sessions of this process
        return options;
    }
};

TEST_P(FrameVectors, MatchOnEveryNumberOfThreads) {
    const FrameVector frame = vector();
    for (int threads = 1; threads <= 8; ++threads) {
        SCOPED_TRACE("threads: " + std::to_string(threads));
        HostOptions options = auditedOptions(frame.iterations());
        options.threads = threads;
        renderAndCompare(frame, options);
    }
}

TEST_P(FrameVectors, MatchForEveryNumberOfIterationsInShuffledOrderOnThreads) {
    const FrameVector frame = vector();
    for (int iterations = 1; iterations <= 8; ++iterations) {
        SCOPED_TRACE("iterations: " + std::to_string(iterations));
        HostOptions options = auditedOptions(iterations);
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
        HostOptions options = auditedOptions(frame.iterations());
        options.threads = 2;
        options.rowPadding = padding;
        options.dataOffset = padding == 20 ? 4 : 0;
        renderAndCompare(frame, options);
    }
}

TEST_P(FrameVectors, MatchThroughTheOneCommandOfOlderHosts) {
    const FrameVector frame = vector();
    renderAndCompare(frame, auditedOptions(frame.iterations()), RenderFlow::kLegacy);
}

TEST_P(FrameVectors, MatchInHostsWhoseRecordsAreLonger) {
    const FrameVector frame = vector();
    HostOptions options = auditedOptions(frame.iterations());
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
    HostOptions options = auditedOptions(frame.iterations());
    options.globalSetdownAtEnd = true;
    for (const RenderFlow flow : {RenderFlow::kSmart, RenderFlow::kLegacy}) {
        EffectModule module = EffectModule::load(KOVALUNE_PLUGIN);
        renderAndCompare(frame, options, module, flow);
    }
}

TEST(LongerRecords, AreBorneByTheGreyingOfControlsToo) {
    const auto greyed = [](int extraBytes) {
        HostOptions options;
        options.audit = true;
        options.globalSetdownAtEnd = false;
        options.extraRecordBytes = extraBytes;
        Host host(options);
        EffectModule module = EffectModule::linked(EntryPointFunc);
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
