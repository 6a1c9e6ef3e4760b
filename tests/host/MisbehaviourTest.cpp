#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace kovalune::test {
using namespace host;
namespace {

/// What the effect sees of both worlds.
struct Seen {
    PF_Err inputCode = -1;
    PF_Err outputCode = -1;
    bool input = false;
    bool output = false;
    A_long outputWidth = 0;
    A_long outputHeight = 0;
};

Seen lookAtWorlds(const judge::JudgeOptions& options, Image& output) {
    Stage stage(options);
    Seen seen;
    stage.script[PF_Cmd_SMART_RENDER] = [&seen](Call& c) -> PF_Err {
        PF_SmartRenderCallbacks& cb = *c.smartRender().cb;
        PF_EffectWorld* inputWorld = nullptr;
        PF_EffectWorld* outputWorld = nullptr;
        seen.inputCode = cb.checkout_layer_pixels(c.ref(), 0, &inputWorld);
        seen.outputCode = cb.checkout_output(c.ref(), &outputWorld);
        seen.input = inputWorld != nullptr;
        seen.output = outputWorld != nullptr;
        if (outputWorld != nullptr) {
            seen.outputWidth = outputWorld->width;
            seen.outputHeight = outputWorld->height;
            for (A_long y = 0; y < outputWorld->height; ++y) {
                std::memset(worldRow(*outputWorld, y), 0x22,
                            static_cast<std::size_t>(outputWorld->width) * 4);
            }
        }
        return cb.checkin_layer_pixels(c.ref(), 0);
    };
    const RenderResult result = stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 3), output);
    EXPECT_TRUE(result.ok());
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
    return seen;
}

TEST(Misbehaviour, NullInputWorldComesWithSuccess) {
    judge::JudgeOptions options = Stage::audited();
    options.nullInputWorld = true;
    Image output;
    const Seen seen = lookAtWorlds(options, output);
    EXPECT_EQ(seen.inputCode, PF_Err_NONE);
    EXPECT_FALSE(seen.input);
    EXPECT_TRUE(seen.output);
}

TEST(Misbehaviour, NullOutputWorldComesWithSuccess) {
    judge::JudgeOptions options = Stage::audited();
    options.nullOutputWorld = true;
    Image output;
    const Seen seen = lookAtWorlds(options, output);
    EXPECT_EQ(seen.outputCode, PF_Err_NONE);
    EXPECT_FALSE(seen.output);
    EXPECT_TRUE(seen.input);
}

TEST(Misbehaviour, TheOutputWorldCanBeOfAnotherSize) {
    judge::JudgeOptions options = Stage::audited();
    options.outputWidthDelta = -1;
    options.outputHeightDelta = 2;
    Image output;
    const Seen seen = lookAtWorlds(options, output);
    EXPECT_EQ(seen.outputWidth, 3);
    EXPECT_EQ(seen.outputHeight, 5);
    EXPECT_EQ(output.at<PF_Pixel>(2, 2).red, 0x22);
    EXPECT_EQ(output.at<PF_Pixel>(3, 2).red, 0); // no pixel of the world stands here
}

TEST(Misbehaviour, TheLegacyOutputCanBeOfAnotherSizeToo) {
    judge::JudgeOptions options = Stage::audited();
    options.outputWidthDelta = 1;
    Stage stage(options);
    stage.script[PF_Cmd_RENDER] = [](Call& c) -> PF_Err { return c.output->width; };
    RenderRequest request;
    request.flow = RenderFlow::kLegacy;
    Image output;
    EXPECT_EQ(stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 3), output, request).code, 5);
}

TEST(Misbehaviour, AnOutputWorldOfNoSizeIsTheCallersError) {
    judge::JudgeOptions options = Stage::audited();
    options.outputWidthDelta = -4;
    Stage stage(options);
    Image output;
    EXPECT_THROW(stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 3), output), HostError);
    stage.host.options().outputWidthDelta = 0;
    EXPECT_TRUE(stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 3), output).ok());
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Misbehaviour, BytesCanBeWrittenAfterEachRecordOfTheEffects) {
    judge::JudgeOptions options = Stage::audited();
    options.extraRecordBytes = 20;
    Stage stage(options);
    struct RoomyWorld {
        PF_EffectWorld world{};
        std::array<unsigned char, 32> after{};
    };
    std::array<unsigned char, 32> expected{};
    std::fill_n(expected.begin(), 20, static_cast<unsigned char>(0xA5));
    stage.script[PF_Cmd_ABOUT] = [&expected](Call& c) -> PF_Err {
        struct {
            PF_ParamDef def{};
            std::array<unsigned char, 32> after{};
        } param;
        EXPECT_EQ(c.in.inter.checkout_param(c.ref(), 0, 0, 1, 24, &param.def), PF_Err_NONE);
        EXPECT_EQ(param.after, expected);
        EXPECT_EQ(c.in.inter.checkin_param(c.ref(), &param.def), PF_Err_NONE);
        const auto& worlds = c.need<PFWorldSuite2>(kPFWorldSuite, kPFWorldSuiteVersion2);
        RoomyWorld room;
        EXPECT_EQ(worlds.PF_NewWorld(c.ref(), 2, 2, 1, PF_PixelFormat_ARGB32, &room.world), PF_Err_NONE);
        EXPECT_EQ(room.after, expected);
        worlds.PF_DisposeWorld(c.ref(), &room.world);
        c.release(kPFWorldSuite, kPFWorldSuiteVersion2);
        return PF_Err_NONE;
    };
    EXPECT_TRUE(stage.session().about().ok());
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
    stage.host.options().extraRecordBytes = 33;
    EXPECT_THROW(stage.session().about(), HostError);
    stage.host.options().extraRecordBytes = 0;
}

} // namespace
} // namespace kovalune::test
