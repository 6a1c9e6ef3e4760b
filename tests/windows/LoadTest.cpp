// Loading and unloading of the finished plug-in, as a host does that looks for effects and one that ends.

#include "tests/vectors/VectorFile.h"
#include "tests/windows/ProcessUsage.h"

#include "host/EffectModule.h"
#include "host/Session.h"
#include "host/judge/JudgedHost.h"
#include "hostapi/Suites.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <thread>
#include <vector>

namespace kovalune::test {
namespace {

test::FrameVector vectorNamed(const char* name) {
    return test::readFrameVector(std::filesystem::path(KOVALUNE_VECTORS) / name);
}

void expectFrame(host::Session& session, const test::FrameVector& vector) {
    vector.applyTo(session);
    host::Image output;
    const host::RenderResult result = session.render(vector.input, output, vector.request());
    EXPECT_TRUE(result.ok()) << result.code << ": " << result.returnMsg;
    EXPECT_EQ(test::firstDifference(output, vector.expected), "");
}

/// What 100 turns of something add to what the process holds, after some that fill what is kept for later.
template <class Turn>
ProcessUsage growthOf(const Turn& turn) {
    for (int i = 0; i < 10; ++i) {
        turn();
    }
    const ProcessUsage before = ProcessUsage::now();
    for (int i = 0; i < 100; ++i) {
        turn();
    }
    return ProcessUsage::now() - before;
}

/// Of a hundred turns, of which each would have left something. The process itself may close a handle that it had before, or open
/// one at the first time that two threads meet at a lock, and keep a block of its own now and then.
void expectNothingLeft(const ProcessUsage& growth) {
    EXPECT_LT(growth.handles, 10);
    EXPECT_LE(growth.threadSlots, 0);
    EXPECT_LT(growth.heapBlocks, 10);
}

/// The parameter says whether the host takes its leave with PF_Cmd_GLOBAL_SETDOWN.
class ManyLoads : public testing::TestWithParam<host::SetDown> {
protected:
    void loadAndRender() const {
        host::EffectModule module = host::EffectModule::load(KOVALUNE_PLUGIN, GetParam());
        host::HostOptions options;
        options.threads = 3;
        host::Host host(options);
        host::Session session(host, module);
        ASSERT_TRUE(session.setupResult().ok()) << session.setupResult().returnMsg;
        expectFrame(session, vector_);
        EXPECT_NE(GetModuleHandleA(kFile), nullptr);
    }

    static constexpr char kFile[] = "Kovalune.aex";

private:
    const test::FrameVector vector_ = vectorNamed("process-many-argb-0");
};

TEST_P(ManyLoads, LeaveNothingBehind) {
    expectNothingLeft(growthOf([this] { loadAndRender(); }));
    EXPECT_EQ(GetModuleHandleA(kFile), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Farewells, ManyLoads,
                         testing::Values(host::SetDown::kNever, host::SetDown::kWithSession),
                         [](const auto& each) {
                             return each.param == host::SetDown::kWithSession ? "WithSetdown"
                                                                              : "WithoutSetdown";
                         });

std::vector<std::byte> bytesOf(std::initializer_list<uint32_t> words) {
    std::vector<std::byte> bytes;
    for (const uint32_t word : words) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes.push_back(static_cast<std::byte>(word >> shift));
        }
    }
    return bytes;
}

constexpr uint32_t kMagic = 0x70736571;

TEST(LoadedPlugIn, SavesAndReopensItsSequenceData) {
    host::EffectModule module = host::EffectModule::load(KOVALUNE_PLUGIN);
    host::Host host;
    host::Session session(host, module);
    ASSERT_TRUE(session.sequenceSetup().ok());
    EXPECT_EQ(session.sequenceBytes(), bytesOf({kMagic, 0, 24, 1, 0, 0}));
    session.setSequenceBytes(bytesOf({kMagic, 1, 1, 24, 77, 88}));
    ASSERT_TRUE(session.sequenceResetup().ok());
    EXPECT_EQ(session.sequenceBytes(), bytesOf({kMagic, 0, 24, 1, 77, 88}));
    ASSERT_TRUE(session.sequenceFlatten().ok());
    EXPECT_EQ(session.sequenceBytes(), bytesOf({kMagic, 1, 1, 24, 77, 88}));
    session.setSequenceBytes({});
    ASSERT_TRUE(session.sequenceResetup().ok());
    EXPECT_EQ(session.sequenceBytes(), bytesOf({kMagic, 0, 24, 1, 0, 0}));
    EXPECT_TRUE(session.sequenceSetdown().ok());
}

TEST(LoadedPlugIn, AnswersEveryCommandThatAsksForNothing) {
    host::EffectModule module = host::EffectModule::load(KOVALUNE_PLUGIN);
    host::judge::JudgedHost host;
    host::Session session(host, module);
    EXPECT_EQ(session.outFlags(), 0x06000070);
    EXPECT_EQ(session.outFlags2(), 0x00001419);
    const host::CommandResult about = session.about();
    EXPECT_TRUE(about.ok());
    EXPECT_TRUE(about.returnMsg.starts_with("Kovalune 1.0.1 Release")) << about.returnMsg;
    EXPECT_TRUE(session.updateParamsUI().ok());
    for (const PF_Cmd command : {2, 10, 12, 13, 15, 16, 17, 18, 19, 20, 21, 22, 25, 1000}) {
        EXPECT_TRUE(session.run(command).ok()) << command;
    }
    EXPECT_TRUE(host.audit().clean()) << host.audit().text();
}

TEST(LoadedPlugIn, KeepsNothingOfThreadsThatHaveEnded) {
    const test::FrameVector vector = vectorNamed("process-many-argb-0");
    host::EffectModule module = host::EffectModule::load(KOVALUNE_PLUGIN, host::SetDown::kNever);
    host::judge::JudgeOptions options;
    options.threads = 3;
    const auto renderOnNewThreads = [&](const std::vector<host::judge::SuiteName>& withheld) {
        options.withheldSuites = withheld;
        std::thread([&] {
            host::judge::JudgedHost host(options);
            host::Session session(host, module);
            vector.applyTo(session);
            host::Image output;
            EXPECT_EQ(session.render(vector.input, output, vector.request()).ok(), withheld.empty());
        }).join();
    };
    expectNothingLeft(growthOf([&] {
        renderOnNewThreads({});
        // A missing suite is an exception inside the effect.
        renderOnNewThreads({{kPFWorldSuite, kPFWorldSuiteVersion1}, {kPFWorldSuite, kPFWorldSuiteVersion2}});
    }));
}

TEST(LoadedPlugIn, LivesOnAfterItsSetdownAndStartsAnewWithTheNextLoad) {
    const test::FrameVector vector = vectorNamed("base-smooth-ae16-0");
    {
        host::EffectModule module = host::EffectModule::load(KOVALUNE_PLUGIN);
        host::Host host;
        host::Session session(host, module);
        expectFrame(session, vector);
        EXPECT_TRUE(session.run(PF_Cmd_GLOBAL_SETDOWN).ok());
        EXPECT_TRUE(session.about().ok());
        EXPECT_TRUE(session.updateParamsUI().ok());
        host::Image output;
        EXPECT_EQ(session.render(vector.input, output, vector.request()).code,
                  PF_Err_INTERNAL_STRUCT_DAMAGED);
        EXPECT_TRUE(session.run(PF_Cmd_GLOBAL_SETDOWN).ok());
    }
    host::EffectModule module = host::EffectModule::load(KOVALUNE_PLUGIN);
    host::Host host;
    host::Session session(host, module);
    expectFrame(session, vector);
}

} // namespace
} // namespace kovalune::test
