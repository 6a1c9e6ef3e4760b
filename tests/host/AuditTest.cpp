#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TEST_UNDER_ADDRESS_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define TEST_UNDER_ADDRESS_SANITIZER 1
#endif

namespace kovalune::test {
using namespace host;
namespace {

std::vector<std::string> misuseOf(const Handler& handler) {
    Stage stage;
    stage.during(handler);
    return stage.host.audit().misuse;
}

TEST(Audit, AWellBehavedRenderIsClean) {
    Stage stage;
    Image output;
    const RenderResult result = stage.session().render(patterned(PF_PixelFormat_ARGB32, 9, 5), output);
    EXPECT_TRUE(result.ok());
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
    EXPECT_EQ(stage.host.audit().text(), "");
}

TEST(Audit, HandleMisuseIsNamed) {
    EXPECT_EQ(misuseOf([](Call& c) {
                  PF_Handle handle = c.utils().host_new_handle(1);
                  c.utils().host_unlock_handle(handle);
                  c.utils().host_dispose_handle(handle);
                  return PF_Err_NONE;
              }),
              std::vector<std::string>{"unlock of a handle that is not locked"});
    EXPECT_EQ(misuseOf([](Call& c) {
                  PF_Handle handle = c.utils().host_new_handle(1);
                  c.utils().host_lock_handle(handle);
                  c.utils().host_dispose_handle(handle);
                  return PF_Err_NONE;
              }),
              std::vector<std::string>{"dispose of a locked handle"});
    EXPECT_EQ(misuseOf([](Call& c) {
                  PF_Handle handle = c.utils().host_new_handle(1);
                  c.utils().host_dispose_handle(handle);
                  c.utils().host_dispose_handle(handle);
                  EXPECT_EQ(c.utils().host_lock_handle(nullptr), nullptr);
                  return PF_Err_NONE;
              }),
              (std::vector<std::string>{"dispose of an unknown handle", "lock of an unknown handle"}));
}

TEST(Audit, WorldMisuseIsNamed) {
    EXPECT_EQ(
        misuseOf([](Call& c) {
            PF_EffectWorld world{};
            c.utils().new_world(c.ref(), 1, 1, 0, &world);
            PF_EffectWorld stale = world;
            EXPECT_EQ(c.utils().dispose_world(c.ref(), &world), PF_Err_NONE);
            EXPECT_EQ(world.data, nullptr);
            EXPECT_EQ(c.utils().dispose_world(c.ref(), &world), PF_Err_BAD_CALLBACK_PARAM);
            EXPECT_EQ(c.utils().dispose_world(c.ref(), &stale), PF_Err_BAD_CALLBACK_PARAM);
            return PF_Err_NONE;
        }),
        (std::vector<std::string>{"dispose_world of an unknown world", "dispose_world of an unknown world"}));
}

TEST(Audit, TheHostsOwnWorldsAreNotTheEffectsToDispose) {
    Stage stage;
    stage.script[PF_Cmd_SMART_RENDER] = [](Call& c) -> PF_Err {
        PF_EffectWorld* output = nullptr;
        c.smartRender().cb->checkout_output(c.ref(), &output);
        PF_EffectWorld copy = *output;
        return c.utils().dispose_world(c.ref(), &copy);
    };
    Image output;
    const RenderResult result = stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output);
    EXPECT_EQ(result.code, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(stage.host.audit().misuse.size(), 1U);
}

TEST(Audit, AWorldLeftBehindIsALeakUntilDisposed) {
    Stage stage;
    PF_EffectWorld world{};
    stage.during([&](Call& c) { return c.utils().new_world(c.ref(), 2, 2, 0, &world); });
    EXPECT_EQ(stage.host.audit().liveWorlds, 1);
    EXPECT_EQ(stage.host.audit().text(), "1 worlds not disposed of\n");
    stage.during([&](Call& c) { return c.utils().dispose_world(c.ref(), &world); });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

/// Writes one byte after the pixels of row 1, `beyond` bytes on.
judge::AuditReport afterRowOverrun(int rowPadding, A_long beyond, bool whileLive) {
    judge::JudgeOptions options = Stage::audited();
    options.rowPadding = rowPadding;
    Stage stage(options);
    judge::AuditReport live;
    stage.during([&](Call& c) {
        PF_EffectWorld world{};
        c.utils().new_world(c.ref(), 3, 4, 0, &world);
        worldRow(world, 1)[12 + beyond] = std::byte{1};
        live = stage.host.audit();
        return c.utils().dispose_world(c.ref(), &world);
    });
    return whileLive ? live : stage.host.audit();
}

TEST(Audit, AWriteBehindARowIsDamage) {
    const std::vector<std::string> expected{"world 3x4: written behind row 1"};
    EXPECT_EQ(afterRowOverrun(0, 0, false).guardDamage, expected);  // the guard
    EXPECT_EQ(afterRowOverrun(8, 0, false).guardDamage, expected);  // the padding
    EXPECT_EQ(afterRowOverrun(8, 8, false).guardDamage, expected);  // the guard after it
    EXPECT_EQ(afterRowOverrun(8, 23, false).guardDamage, expected); // its last byte
    EXPECT_EQ(afterRowOverrun(8, 3, true).guardDamage, expected);   // before the world is disposed of
}

// AddressSanitizer itself reports the writes of these, at once.
#if !defined(TEST_UNDER_ADDRESS_SANITIZER)

judge::AuditReport afterWorldOverrun(A_long row, std::ptrdiff_t offset) {
    Stage stage;
    stage.during([&](Call& c) {
        PF_EffectWorld world{};
        c.utils().new_world(c.ref(), 3, 4, 0, &world);
        worldRow(world, row)[offset] = std::byte{1};
        return c.utils().dispose_world(c.ref(), &world);
    });
    return stage.host.audit();
}

TEST(Audit, AWriteBeforeOrBehindAWorldIsDamage) {
    const std::vector<std::string> expected{"world 3x4: written outside its rows"};
    EXPECT_EQ(afterWorldOverrun(0, -1).guardDamage, expected);
    EXPECT_EQ(afterWorldOverrun(4, 0).guardDamage, expected);
}

TEST(Audit, AWriteBesideAHandlesBytesIsDamage) {
    Stage stage;
    stage.during([&](Call& c) {
        PF_Handle handle = c.utils().host_new_handle(10);
        static_cast<std::byte*>(*handle)[10] = std::byte{1};
        EXPECT_EQ(stage.host.audit().guardDamage.size(), 1U);
        c.utils().host_dispose_handle(handle);
        return PF_Err_NONE;
    });
    EXPECT_EQ(stage.host.audit().guardDamage,
              std::vector<std::string>{"handle of 10 bytes: written outside its bytes"});
}

#else

// With threads about, a death test runs in a program of its own.
TEST(AuditDeathTest, AReadOutsideOfAWorldEndsTheProgram) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto readBehind = [](std::ptrdiff_t offset) {
        Stage stage;
        stage.during([offset](Call& c) -> PF_Err {
            PF_EffectWorld world{};
            c.utils().new_world(c.ref(), 4, 4, 0, &world);
            const volatile std::byte* at = worldRow(world, 0) + offset;
            return std::to_integer<PF_Err>(*at);
        });
    };
    EXPECT_DEATH(readBehind(-1), "use-after-poison");
    EXPECT_DEATH(readBehind(4 * (4 * 4 + 16)), "use-after-poison");
}

#endif

TEST(Audit, AWriteToTheInputsPixelsIsDamage) {
    Stage stage;
    stage.script[PF_Cmd_SMART_RENDER] = [](Call& c) -> PF_Err {
        PF_EffectWorld* input = nullptr;
        c.smartRender().cb->checkout_layer_pixels(c.ref(), 0, &input);
        worldRow(*input, 1)[3] ^= std::byte{1};
        return c.smartRender().cb->checkin_layer_pixels(c.ref(), 0);
    };
    Image output;
    stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output);
    EXPECT_EQ(stage.host.audit().guardDamage, std::vector<std::string>{"the input's pixels were written"});
}

TEST(Audit, LayerMisuseIsNamed) {
    Stage stage;
    stage.script[PF_Cmd_SMART_RENDER] = [](Call& c) -> PF_Err {
        PF_SmartRenderCallbacks& cb = *c.smartRender().cb;
        PF_EffectWorld* input = nullptr;
        EXPECT_EQ(cb.checkin_layer_pixels(c.ref(), 0), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(cb.checkout_layer_pixels(c.ref(), 5, &input), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(cb.checkout_layer_pixels(c.ref(), 0, &input), PF_Err_NONE);
        EXPECT_EQ(cb.checkout_layer_pixels(c.ref(), 0, &input), PF_Err_BAD_CALLBACK_PARAM);
        return PF_Err_NONE;
    };
    Image output;
    stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output);
    EXPECT_EQ(stage.host.audit().misuse.size(), 3U);
    EXPECT_EQ(stage.host.audit().layerCheckouts, 1); // the last one was never checked in
}

} // namespace
} // namespace kovalune::test
