#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <thread>

namespace kovalune::test {
using namespace host;
namespace {

bool equalRects(const PF_LRect& a, const PF_LRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

RenderRequest asking(const PF_LRect& rect) {
    RenderRequest request;
    request.rect = rect;
    return request;
}

RenderRequest legacy() {
    RenderRequest request;
    request.flow = RenderFlow::kLegacy;
    return request;
}

/// Every byte of the output's pixels becomes 0x11.
PF_Err paintOutput(Call& c) {
    PF_EffectWorld* output = nullptr;
    const PF_Err err = c.smartRender().cb->checkout_output(c.ref(), &output);
    for (A_long y = 0; err == 0 && y < output->height; ++y) {
        std::memset(worldRow(*output, y), 0x11, static_cast<std::size_t>(output->width) * 4);
    }
    return err;
}

struct Layout {
    PF_PixelFormat format;
    int rowPadding;
};

class Renders : public testing::TestWithParam<Layout> {
protected:
    judge::JudgeOptions options() const {
        judge::JudgeOptions result = Stage::audited();
        result.rowPadding = GetParam().rowPadding;
        return result;
    }
};

INSTANTIATE_TEST_SUITE_P(Layouts, Renders,
                         testing::Values(Layout{PF_PixelFormat_ARGB32, 0}, Layout{PF_PixelFormat_ARGB32, 4},
                                         Layout{PF_PixelFormat_ARGB64, 0}, Layout{PF_PixelFormat_ARGB64, 12},
                                         Layout{PF_PixelFormat_ARGB128, 0},
                                         Layout{PF_PixelFormat_ARGB128, 4}));

TEST_P(Renders, PixelsPassThroughTheSmartCommandsUnchanged) {
    Stage stage(options());
    const Image input = patterned(GetParam().format, 7, 5);
    Image output;
    const RenderResult result = stage.session().render(input, output);
    EXPECT_TRUE(result.ok());
    EXPECT_TRUE(result.rendered);
    EXPECT_EQ(result.command, PF_Cmd_SMART_RENDER);
    EXPECT_EQ(output, input);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST_P(Renders, PixelsPassThroughTheLegacyCommandUnchanged) {
    Stage stage(options());
    stage.script[PF_Cmd_RENDER] = [](Call& c) {
        return c.utils().copy(c.ref(), &c.params[0]->u.ld, c.output, nullptr, nullptr);
    };
    const Image input = patterned(GetParam().format, 7, 5);
    Image output;
    const RenderResult result = stage.session().render(input, output, legacy());
    EXPECT_TRUE(result.ok());
    EXPECT_EQ(result.command, PF_Cmd_RENDER);
    EXPECT_EQ(output, input);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST_P(Renders, BitDepthFollowsTheFormat) {
    Stage stage(options());
    int preRender = 0;
    int render = 0;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [&](Call& c) {
        preRender = c.preRender().input->bitdepth;
        return askForLayer(c);
    };
    stage.script[PF_Cmd_SMART_RENDER] = [&](Call& c) {
        render = c.smartRender().input->bitdepth;
        return copyThrough(c);
    };
    Image output;
    stage.session().render(patterned(GetParam().format, 2, 2), output);
    EXPECT_EQ(preRender, bitsPerChannel(GetParam().format));
    EXPECT_EQ(render, preRender);
}

TEST(SmartRender, ARequestGivesItsPartAndLeavesTheRest) {
    Stage stage;
    stage.script[PF_Cmd_SMART_RENDER] = [](Call& c) -> PF_Err {
        PF_SmartRenderCallbacks& cb = *c.smartRender().cb;
        PF_EffectWorld* input = nullptr;
        PF_EffectWorld* output = nullptr;
        cb.checkout_layer_pixels(c.ref(), 0, &input);
        cb.checkout_output(c.ref(), &output);
        EXPECT_EQ(input->width, 3);
        EXPECT_EQ(input->height, 2);
        EXPECT_EQ(input->origin_x, 2);
        EXPECT_EQ(input->origin_y, 1);
        EXPECT_EQ(output->width, 3);
        EXPECT_EQ(output->height, 2);
        EXPECT_EQ(worldRow(*output, 1)[11], std::byte{0x55}); // what the caller's picture held
        c.utils().copy(c.ref(), input, output, nullptr, nullptr);
        return cb.checkin_layer_pixels(c.ref(), 0);
    };
    const Image input = patterned(PF_PixelFormat_ARGB32, 6, 4);
    Image output(PF_PixelFormat_ARGB32, 6, 4);
    std::memset(output.row(0), 0x55, output.rowBytes() * 4);
    const RenderResult result = stage.session().render(input, output, asking({2, 1, 5, 3}));
    EXPECT_TRUE(equalRects(result.requestRect, {2, 1, 5, 3}));
    EXPECT_TRUE(equalRects(result.resultRect, {2, 1, 5, 3}));
    EXPECT_TRUE(equalRects(result.maxResultRect, {0, 0, 6, 4}));
    EXPECT_TRUE(equalRects(result.layerRequest, {2, 1, 5, 3}));
    for (A_long y = 0; y < 4; ++y) {
        for (A_long x = 0; x < 6; ++x) {
            const bool inside = x >= 2 && x < 5 && y >= 1 && y < 3;
            EXPECT_EQ(output.at<PF_Pixel>(x, y).green, inside ? input.at<PF_Pixel>(x, y).green : 0x55);
        }
    }
}

TEST(SmartRender, ARequestBeyondTheLayerIsCutToIt) {
    Stage stage;
    Image output;
    const RenderResult result =
        stage.session().render(patterned(PF_PixelFormat_ARGB32, 6, 4), output, asking({-5, 2, 3, 40}));
    EXPECT_TRUE(equalRects(result.resultRect, {0, 2, 3, 4}));
    EXPECT_TRUE(result.ok());
}

TEST(SmartRender, AnEmptyResultIsNotRendered) {
    Stage stage;
    bool sent = false;
    stage.script[PF_Cmd_SMART_RENDER] = [&](Call&) -> PF_Err {
        sent = true;
        return PF_Err_NONE;
    };
    Image output;
    const RenderResult result =
        stage.session().render(patterned(PF_PixelFormat_ARGB32, 6, 4), output, asking({10, 10, 20, 20}));
    EXPECT_TRUE(result.ok());
    EXPECT_FALSE(result.rendered);
    EXPECT_FALSE(sent);
    EXPECT_EQ(result.command, PF_Cmd_SMART_PRE_RENDER);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text(); // the data are disposed of
}

TEST(SmartRender, AFailedPreRenderEndsTheFrameAndItsData) {
    Stage stage;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) -> PF_Err {
        askForLayer(c);
        return 700;
    };
    Image output;
    const RenderResult result = stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output);
    EXPECT_EQ(result.code, 700);
    EXPECT_EQ(result.command, PF_Cmd_SMART_PRE_RENDER);
    EXPECT_FALSE(result.rendered);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(SmartRender, WhatAFailedRenderWroteIsSeen) {
    Stage stage;
    stage.script[PF_Cmd_SMART_RENDER] = [](Call& c) -> PF_Err {
        paintOutput(c);
        return 701;
    };
    Image output;
    const RenderResult result = stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output);
    EXPECT_EQ(result.code, 701);
    EXPECT_TRUE(result.rendered);
    EXPECT_EQ(output.at<PF_Pixel>(1, 1).red, 0x11);
}

TEST(SmartRender, TheSecondCommandGetsTheDataAndNoParameters) {
    Stage stage;
    void* made = nullptr;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [&](Call& c) {
        EXPECT_EQ(c.params, nullptr);
        EXPECT_EQ(c.output, nullptr);
        const PF_Err err = askForLayer(c);
        made = c.preRender().output->pre_render_data;
        return err;
    };
    stage.script[PF_Cmd_SMART_RENDER] = [&](Call& c) {
        EXPECT_EQ(c.params, nullptr);
        EXPECT_EQ(c.smartRender().input->pre_render_data, made);
        return copyThrough(c);
    };
    Image output;
    EXPECT_TRUE(stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output).rendered);
}

TEST(SmartRender, ADeleteFunctionIsUsedInsteadOfTheHosts) {
    Stage stage;
    static int deleted;
    static PF_UtilCallbacks* utils;
    deleted = 0;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) {
        const PF_Err err = askForLayer(c);
        utils = c.in.utils;
        c.preRender().output->delete_pre_render_data_func = [](void* data) {
            ++deleted;
            utils->host_dispose_handle(static_cast<PF_Handle>(data));
        };
        return err;
    };
    Image output;
    stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output);
    EXPECT_EQ(deleted, 1);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(SmartRender, DataThatAreNoHandleAreMisuse) {
    Stage stage;
    static int number;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) -> PF_Err {
        c.preRender().output->pre_render_data = &number;
        return 1;
    };
    Image output;
    stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output);
    EXPECT_EQ(stage.host.audit().misuse.size(), 1U);
}

TEST(SmartRender, AResultBeyondTheRequestIsMisuseUnlessAnnounced) {
    for (const bool announced : {false, true}) {
        Stage stage;
        stage.script[PF_Cmd_SMART_PRE_RENDER] = [announced](Call& c) -> PF_Err {
            const PF_Err err = askForLayer(c);
            c.preRender().output->result_rect = {0, 0, 4, 4};
            c.preRender().output->flags =
                static_cast<short>(announced ? PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS : 0);
            return err;
        };
        stage.script[PF_Cmd_SMART_RENDER] = paintOutput;
        Image output;
        stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 4), output, asking({0, 0, 2, 2}));
        EXPECT_EQ(stage.host.audit().misuse.size(), announced ? 0U : 1U);
        EXPECT_EQ(output.at<PF_Pixel>(3, 3).red, 0x11);
    }
}

TEST(SmartRender, AResultOutOfAllBoundsEndsTheFrame) {
    Stage stage;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) -> PF_Err {
        c.preRender().output->result_rect = {-2147483647, 0, 2147483647, 4};
        return PF_Err_NONE;
    };
    Image output;
    const RenderResult result = stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 4), output);
    EXPECT_FALSE(result.rendered);
    EXPECT_FALSE(result.ok());
    EXPECT_EQ(result.code, PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(result.command, PF_Cmd_SMART_PRE_RENDER);
    EXPECT_EQ(stage.host.audit().misuse.size(), 1U);
}

/// Promises a result that it need not fill.
Handler promising(const PF_LRect& rect) {
    return [rect](Call& c) -> PF_Err {
        c.preRender().output->result_rect = rect;
        c.preRender().output->max_result_rect = rect;
        c.preRender().output->flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
        return PF_Err_NONE;
    };
}

TEST(SmartRender, AResultLargerThanAWorldEndsTheFrame) {
    for (const PF_LRect& rect : {PF_LRect{0, 0, 30001, 1}, PF_LRect{0, -1, 1, 30000}}) {
        Stage stage;
        stage.script[PF_Cmd_SMART_PRE_RENDER] = promising(rect);
        Image output;
        const RenderResult result = stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 4), output);
        EXPECT_FALSE(result.rendered);
        EXPECT_EQ(result.code, PF_Err_INTERNAL_STRUCT_DAMAGED);
        EXPECT_EQ(stage.host.audit().misuse,
                  std::vector<std::string>{"the pre-render's result is of a size that no world has"});
    }
}

TEST(SmartRender, AnInsideOutResultIsRefusedWhereEmptyOnesAreRendered) {
    for (const PF_LRect& rect : {PF_LRect{3, 0, 1, 4}, PF_LRect{2147483647, 0, -2147483647, 4}}) {
        judge::JudgeOptions options = Stage::audited();
        options.allowEmpty = true;
        Stage stage(options);
        stage.script[PF_Cmd_SMART_PRE_RENDER] = promising(rect);
        Image output;
        const RenderResult result = stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 4), output);
        EXPECT_FALSE(result.rendered);
        EXPECT_EQ(result.code, PF_Err_INTERNAL_STRUCT_DAMAGED);
        EXPECT_EQ(stage.host.audit().misuse.size(), 1U);
    }
}

// Rows of more bytes than a world can tell of.
TEST(SmartRender, AnOutputWorldBeyondAllMemoryIsABadAlloc) {
    judge::JudgeOptions options = Stage::audited();
    options.allowHuge = true;
    Stage stage(options);
    stage.script[PF_Cmd_SMART_PRE_RENDER] = promising({-(1 << 28), 0, 1 << 28, 4});
    Image output;
    EXPECT_THROW(stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 4), output), std::bad_alloc);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(LegacyRender, AnOutputWorldBeyondAllMemoryIsABadAlloc) {
    judge::JudgeOptions options = Stage::audited();
    options.allowHuge = true;
    options.outputWidthDelta = 1 << 29;
    Stage stage(options);
    Image output;
    EXPECT_THROW(stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 4), output, legacy()),
                 std::bad_alloc);
    stage.host.options().allowHuge = false; // now the size is refused before any memory is asked for
    EXPECT_THROW(stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 4), output, legacy()), HostError);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

// Row padding shows whether a world was cleared: only uncleared memory is poisoned.
TEST(SmartRender, WorldsThatThePictureCoversAreNotClearedFirst) {
    judge::JudgeOptions options;
    options.threads = 1;
    options.rowPadding = 4;
    options.poisonNewWorlds = true;
    Stage stage(options);
    stage.script[PF_Cmd_SMART_RENDER] = [](Call& c) -> PF_Err {
        PF_EffectWorld* input = nullptr;
        PF_EffectWorld* output = nullptr;
        c.smartRender().cb->checkout_layer_pixels(c.ref(), 0, &input);
        c.smartRender().cb->checkout_output(c.ref(), &output);
        EXPECT_EQ(worldRow(*input, 1)[4 * 4], std::byte{0xCD});
        EXPECT_EQ(worldRow(*output, 1)[4 * 4], std::byte{0xCD});
        return c.smartRender().cb->checkin_layer_pixels(c.ref(), 0);
    };
    Image output;
    EXPECT_TRUE(stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 4), output).rendered);
}

TEST(SmartRender, WhatNoPictureCoversIsTransparentBlack) {
    judge::JudgeOptions options = Stage::audited();
    options.poisonNewWorlds = true;
    Stage stage(options);
    stage.script[PF_Cmd_SMART_PRE_RENDER] = promising({-1, 0, 5, 4});
    stage.script[PF_Cmd_SMART_RENDER] = [](Call& c) -> PF_Err {
        PF_EffectWorld* output = nullptr;
        const PF_Err err = c.smartRender().cb->checkout_output(c.ref(), &output);
        EXPECT_EQ(worldRow(*output, 2)[0], std::byte{0});
        EXPECT_EQ(worldRow(*output, 2)[4], std::byte{0x55});
        EXPECT_EQ(worldRow(*output, 2)[5 * 4], std::byte{0});
        return err;
    };
    Image output(PF_PixelFormat_ARGB32, 4, 4);
    std::memset(output.row(0), 0x55, output.rowBytes() * 4);
    EXPECT_TRUE(stage.session().render(patterned(PF_PixelFormat_ARGB32, 4, 4), output).rendered);
}

TEST(SmartRender, TheDeleteFunctionTakesItsTurnWithTheCommands) {
    Stage stage;
    static EffectModule* module;
    static bool free;
    module = &stage.module;
    free = true;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) -> PF_Err {
        static int data;
        c.preRender().output->pre_render_data = &data;
        c.preRender().output->delete_pre_render_data_func = [](void*) {
            std::thread([] {
                free = module->commandMutex().try_lock();
                if (free) {
                    module->commandMutex().unlock();
                }
            }).join();
        };
        return 1;
    };
    Image output;
    stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output);
    EXPECT_FALSE(free);
}

TEST(SmartRender, AThrowingDeleteFunctionIsMisuseOnly) {
    Stage stage;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) -> PF_Err {
        static int data;
        c.preRender().output->pre_render_data = &data;
        c.preRender().output->delete_pre_render_data_func = [](void*) { throw 5; };
        return 700;
    };
    Image output;
    EXPECT_EQ(stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output).code, 700);
    EXPECT_EQ(stage.host.audit().misuse,
              std::vector<std::string>{"an exception left a function of the effect"});
}

TEST(SmartRender, CheckoutLayerTellsOfTheWholeLayer) {
    Stage stage;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) -> PF_Err {
        PF_PreRenderExtra& extra = c.preRender();
        PF_RenderRequest request = extra.input->output_request;
        PF_CheckoutResult result{};
        const auto checkout = [&](A_long index, A_long id) {
            return extra.cb->checkout_layer(c.ref(), index, id, &request, 0, 1, 24, &result);
        };
        EXPECT_EQ(checkout(0, 3), PF_Err_NONE);
        EXPECT_TRUE(equalRects(result.max_result_rect, {0, 0, 6, 4}));
        EXPECT_EQ(result.ref_width, 6);
        EXPECT_EQ(result.ref_height, 4);
        EXPECT_EQ(result.par.num, 1);
        EXPECT_EQ(checkout(0, 3), PF_Err_BAD_CALLBACK_PARAM); // the id is in use
        EXPECT_EQ(checkout(1, 4), PF_Err_BAD_CALLBACK_PARAM); // a slider
        EXPECT_EQ(checkout(8, 5), PF_Err_INVALID_INDEX);
        return 1;
    };
    Image output;
    stage.session().render(patterned(PF_PixelFormat_ARGB32, 6, 4), output);
}

TEST(SmartRender, SmartCallbacksBelongToTheirCommand) {
    Stage stage;
    PF_PreRenderCallbacks* early = nullptr;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [&](Call& c) {
        early = c.preRender().cb;
        return askForLayer(c);
    };
    stage.script[PF_Cmd_SMART_RENDER] = [&](Call& c) {
        PF_CheckoutResult result{};
        return early->checkout_layer(c.ref(), 0, 9, &c.smartRender().input->output_request, 0, 1, 24,
                                     &result);
    };
    Image output;
    EXPECT_EQ(stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output).code,
              PF_Err_INVALID_CALLBACK);
    EXPECT_EQ(stage.host.audit().misuse.size(), 1U);
}

TEST(LegacyRender, LayersAndHintReachTheEffect) {
    Stage stage;
    stage.script[PF_Cmd_RENDER] = [](Call& c) -> PF_Err {
        EXPECT_EQ(c.params[0]->u.ld.width, 6);
        EXPECT_EQ(c.output->height, 4);
        EXPECT_EQ(c.in.extent_hint.right, 6);
        EXPECT_EQ(c.in.extent_hint.bottom, 4);
        EXPECT_EQ(c.params[1]->u.sd.value, 5);
        EXPECT_EQ(c.extra, nullptr);
        return PF_Err_NONE;
    };
    Image output;
    EXPECT_TRUE(stage.session().render(patterned(PF_PixelFormat_ARGB32, 6, 4), output, legacy()).ok());
}

TEST(LegacyRender, TheHintCanBeSet) {
    Stage stage;
    stage.script[PF_Cmd_RENDER] = [](Call& c) -> PF_Err { return c.in.extent_hint.left; };
    RenderRequest request = legacy();
    request.extentHint = PF_Rect{};
    request.extentHint->left = 3;
    Image output;
    EXPECT_EQ(stage.session().render(patterned(PF_PixelFormat_ARGB32, 6, 4), output, request).code, 3);
}

TEST(LegacyRender, AnUntouchedOutputKeepsItsPixels) {
    Stage stage;
    stage.script[PF_Cmd_RENDER] = [](Call&) -> PF_Err { return 5; };
    Image output = patterned(PF_PixelFormat_ARGB64, 3, 3);
    const Image before = output;
    stage.session().render(Image(PF_PixelFormat_ARGB64, 3, 3), output, legacy());
    EXPECT_EQ(output, before);
}

TEST(LegacyRender, NoOtherCommandIsSentAroundIt) {
    Stage stage;
    stage.session();
    int others = 0;
    const Handler counting = [&others](Call&) -> PF_Err {
        ++others;
        return PF_Err_NONE;
    };
    for (const PF_Cmd command : {PF_Cmd_FRAME_SETUP, PF_Cmd_FRAME_SETDOWN, PF_Cmd_SEQUENCE_SETUP,
                                 PF_Cmd_SEQUENCE_RESETUP, PF_Cmd_SEQUENCE_SETDOWN}) {
        stage.script[command] = counting;
    }
    Image output;
    EXPECT_TRUE(stage.session().render(patterned(PF_PixelFormat_ARGB32, 6, 4), output, legacy()).rendered);
    EXPECT_EQ(others, 0);
}

TEST(Render, OptionsOutOfRangeByNowAreRefused) {
    Stage stage;
    Session& session = stage.session();
    const Image input = patterned(PF_PixelFormat_ARGB32, 2, 2);
    Image output;
    stage.host.options().rowPadding = -4;
    EXPECT_THROW(session.render(input, output), HostError);
    EXPECT_THROW(session.render(input, output, legacy()), HostError);
    EXPECT_THROW(session.about(), HostError);
    EXPECT_THROW(session.setSequenceBytes({std::byte{1}}), HostError);
    stage.host.options().rowPadding = 4;
    EXPECT_TRUE(session.render(input, output).ok());
    EXPECT_TRUE(session.about().ok());
}

TEST(Render, TimeScaleAndQualityReachTheEffect) {
    Stage stage;
    stage.session().setKey(1, 0, A_long{1});
    stage.session().setKey(1, 9, A_long{2});
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) -> PF_Err {
        EXPECT_EQ(c.in.current_time, 9);
        EXPECT_EQ(c.in.quality, PF_Quality_LO);
        EXPECT_EQ(c.in.downsample_x.num, 1);
        EXPECT_EQ(c.in.downsample_x.den, 2U);
        EXPECT_EQ(c.in.downsample_y.den, 3U);
        EXPECT_EQ(c.in.width, 12);
        EXPECT_EQ(c.in.height, 12);
        PF_ParamDef def{};
        c.in.inter.checkout_param(c.ref(), 1, c.in.current_time, c.in.time_step, c.in.time_scale, &def);
        const A_long value = def.u.sd.value;
        c.in.inter.checkin_param(c.ref(), &def);
        return value;
    };
    RenderRequest request;
    request.time = 9;
    request.quality = PF_Quality_LO;
    request.downsampleX = {1, 2};
    request.downsampleY = {1, 3};
    Image output;
    EXPECT_EQ(stage.session().render(patterned(PF_PixelFormat_ARGB32, 6, 4), output, request).code, 2);
}

TEST(Render, RefusesSizesThatNoHostRenders) {
    Stage stage;
    Image output;
    EXPECT_THROW(stage.session().render(Image(PF_PixelFormat_ARGB32, 0, 4), output), HostError);
    EXPECT_THROW(stage.session().render(Image(PF_PixelFormat_ARGB32, 30001, 1), output), HostError);
    EXPECT_NO_THROW(stage.session().render(Image(PF_PixelFormat_ARGB32, 30000, 1), output));
}

TEST(Render, HugeAndEmptyPicturesCanBeAllowed) {
    judge::JudgeOptions options = Stage::audited();
    options.allowHuge = true;
    options.allowEmpty = true;
    Stage stage(options);
    Image huge;
    EXPECT_TRUE(stage.session().render(Image(PF_PixelFormat_ARGB32, 40000, 1), huge).rendered);
    Image empty;
    EXPECT_TRUE(stage.session().render(Image(PF_PixelFormat_ARGB32, 0, 0), empty).rendered);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Render, RefusesAnOutputOfAnotherKindAndBadScales) {
    Stage stage;
    const Image input(PF_PixelFormat_ARGB32, 4, 4);
    Image other(PF_PixelFormat_ARGB64, 4, 4);
    EXPECT_THROW(stage.session().render(input, other), HostError);
    Image smaller(PF_PixelFormat_ARGB32, 4, 3);
    EXPECT_THROW(stage.session().render(input, smaller), HostError);
    RenderRequest request;
    request.downsampleX = {0, 1};
    Image output;
    EXPECT_THROW(stage.session().render(input, output, request), HostError);
}

} // namespace
} // namespace kovalune::test
