#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace kovalune::test {
using namespace host;
namespace {

judge::JudgeOptions busy(int threads) {
    judge::JudgeOptions options;
    options.audit = true;
    options.threads = threads;
    options.iterations = 8;
    return options;
}

/// The refcon of a pass that inverts every eighth row.
struct Inverting {
    const PF_EffectWorld* from;
    const PF_EffectWorld* to;
};

PF_Err invertRows(void* refcon, A_long, A_long i, A_long iterations) {
    const Inverting& work = *static_cast<Inverting*>(refcon);
    for (A_long y = i; y < work.to->height; y += iterations) {
        for (A_long x = 0; x < work.to->width * 4; ++x) {
            worldRow(*work.to, y)[x] = ~worldRow(*work.from, y)[x];
        }
    }
    return PF_Err_NONE;
}

PF_Err invert(Call& c) {
    PF_SmartRenderCallbacks& cb = *c.smartRender().cb;
    PF_EffectWorld* input = nullptr;
    PF_EffectWorld* output = nullptr;
    cb.checkout_layer_pixels(c.ref(), 0, &input);
    cb.checkout_output(c.ref(), &output);
    PF_EffectWorld scratch{};
    PF_Err err = c.utils().new_world(c.ref(), input->width, input->height, 0, &scratch);
    if (err == 0) {
        Inverting work{input, &scratch};
        err = c.utils().iterate_generic(PF_Iterations_ONCE_PER_PROCESSOR, &work, invertRows);
        c.in.inter.progress(c.ref(), 1, 1);
        c.utils().copy(c.ref(), &scratch, output, nullptr, nullptr);
        c.utils().dispose_world(c.ref(), &scratch);
    }
    cb.checkin_layer_pixels(c.ref(), 0);
    return err;
}

void expectInverted(const Image& input, const Image& output) {
    for (A_long y = 0; y < input.height(); ++y) {
        for (std::size_t x = 0; x < input.rowBytes(); ++x) {
            ASSERT_EQ(output.row(y)[x], ~input.row(y)[x]);
        }
    }
}

TEST(Concurrency, FramesOfOneSessionRenderAtOnce) {
    Stage stage(busy(3));
    stage.script[PF_Cmd_SMART_RENDER] = invert;
    Session& session = stage.session();
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (A_long t = 0; t < 4; ++t) {
        threads.emplace_back([&session, t] {
            const Image input = patterned(PF_PixelFormat_ARGB32, 20 + t, 17);
            for (int frame = 0; frame < 10; ++frame) {
                Image output;
                EXPECT_TRUE(session.render(input, output).ok());
                expectInverted(input, output);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

// Both frames wait for each other inside the second command, so this ends only if they run at once.
TEST(Concurrency, SmartRendersOverlap) {
    Stage stage(busy(2));
    std::atomic<int> inside{0};
    stage.script[PF_Cmd_SMART_RENDER] = [&inside](Call&) -> PF_Err {
        ++inside;
        while (inside < 2) {
            std::this_thread::yield();
        }
        return PF_Err_NONE;
    };
    Session& session = stage.session();
    const auto render = [&session] {
        Image output;
        EXPECT_TRUE(session.render(patterned(PF_PixelFormat_ARGB32, 2, 2), output).ok());
    };
    std::thread other(render);
    render();
    other.join();
}

/// Reports until it is cancelled or at 100 of 100.
PF_Err reportAll(Call& c) {
    for (A_long step = 1; step <= 100; ++step) {
        if (const PF_Err err = c.in.inter.progress(c.ref(), step, 100)) {
            EXPECT_EQ(c.in.inter.abort(c.ref()), err);
            return err;
        }
        EXPECT_EQ(c.in.inter.abort(c.ref()), PF_Err_NONE);
    }
    return PF_Err_NONE;
}

TEST(Concurrency, TwoFramesAtOnceHaveEachItsOwnProgressAndCancellation) {
    Stage stage(busy(2));
    std::atomic<int> inside{0};
    stage.script[PF_Cmd_SMART_RENDER] = [&inside](Call& c) -> PF_Err {
        ++inside;
        while (inside < 2) {
            std::this_thread::yield();
        }
        return reportAll(c);
    };
    Session& session = stage.session();
    const auto render = [&session](int cancelAt, std::vector<int>& steps) {
        RenderRequest request;
        request.onProgress = [cancelAt, &steps](int current, int total) {
            EXPECT_EQ(total, 100);
            steps.push_back(current);
            return current < cancelAt;
        };
        Image output;
        return session.render(patterned(PF_PixelFormat_ARGB32, 2, 2), output, request).code;
    };
    std::vector<int> cancelled;
    std::vector<int> whole;
    PF_Err cancelledCode = PF_Err_NONE;
    std::thread other([&] { cancelledCode = render(30, cancelled); });
    EXPECT_EQ(render(1000, whole), PF_Err_NONE);
    other.join();
    EXPECT_EQ(cancelledCode, PF_Interrupt_CANCEL);
    EXPECT_EQ(cancelled.size(), 30U);
    EXPECT_EQ(whole.size(), 100U);
    // Neither outlives its frame.
    std::vector<int> later;
    EXPECT_EQ(render(1000, later), PF_Err_NONE);
    EXPECT_EQ(later.size(), 100U);
    EXPECT_EQ(whole.size(), 100U);
}

class Serialised : public testing::TestWithParam<RenderFlow> {};
INSTANTIATE_TEST_SUITE_P(Flows, Serialised, testing::Values(RenderFlow::kSmart, RenderFlow::kLegacy));

TEST_P(Serialised, CommandsThatReadParametersNeverOverlap) {
    Stage stage(busy(2));
    int inside = 0; // unguarded on purpose: the host keeps the commands apart
    bool overlapped = false;
    const Handler reading = [&](Call&) -> PF_Err {
        overlapped = overlapped || inside != 0;
        ++inside;
        std::this_thread::yield();
        --inside;
        return 1;
    };
    stage.script[PF_Cmd_SMART_PRE_RENDER] = reading;
    stage.script[PF_Cmd_RENDER] = reading;
    // Two hosts with a session each share the effect and so its turns.
    judge::JudgedHost otherHost(busy(2));
    EffectModule otherModule = EffectModule::linked(scriptedEntry);
    Session otherSession(otherHost, otherModule);
    std::vector<std::thread> threads;
    for (Session* session : {&stage.session(), &stage.session(), &otherSession}) {
        threads.emplace_back([session] {
            RenderRequest request;
            request.flow = GetParam();
            for (int frame = 0; frame < 50; ++frame) {
                Image output;
                session->render(Image(PF_PixelFormat_ARGB32, 2, 2), output, request);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_FALSE(overlapped);
}

TEST(Concurrency, HostsInOneProcessKeepTheirBooksApart) {
    Stage stage(busy(2));
    stage.session();
    judge::JudgedHost other(busy(2));
    EffectModule module = EffectModule::linked(scriptedEntry);
    Session session(other, module);
    stage.during([](Call& c) -> PF_Err {
        c.utils().host_new_handle(5);
        return PF_Err_NONE;
    });
    EXPECT_EQ(stage.host.audit().liveHandles, 1);
    EXPECT_EQ(other.audit().liveHandles, 0);
    session.run(PF_Cmd_COMPLETELY_GENERAL);
    session.run(PF_Cmd_COMPLETELY_GENERAL);
    EXPECT_EQ(other.audit().liveHandles, 2);
    EXPECT_EQ(stage.host.audit().liveHandles, 1);
}

TEST(Concurrency, ValuesMayChangeWhileFramesRender) {
    Stage stage(busy(2));
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) -> PF_Err {
        PF_ParamDef def{};
        c.in.inter.checkout_param(c.ref(), 1, 0, 1, 24, &def);
        EXPECT_TRUE(def.u.sd.value == 5 || def.u.sd.value == 6);
        c.in.inter.checkin_param(c.ref(), &def);
        return 1;
    };
    Session& session = stage.session();
    std::thread setter([&session] {
        for (int i = 0; i < 100; ++i) {
            session.setValue(1, A_long{5 + i % 2});
        }
    });
    for (int frame = 0; frame < 50; ++frame) {
        Image output;
        session.render(Image(PF_PixelFormat_ARGB32, 2, 2), output);
    }
    setter.join();
}

} // namespace
} // namespace kovalune::test
