#include "host/HostState.h"
#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

namespace kovalune::test {
using namespace host;
namespace {

struct FormatCase {
    PF_PixelFormat format;
    A_long pixelBytes;
    A_long flags;
};

class WorldFormats : public testing::TestWithParam<FormatCase> {};

INSTANTIATE_TEST_SUITE_P(All, WorldFormats,
                         testing::Values(FormatCase{PF_PixelFormat_ARGB32, 4, PF_WorldFlag_WRITEABLE},
                                         FormatCase{PF_PixelFormat_ARGB64, 8,
                                                    PF_WorldFlag_WRITEABLE | PF_WorldFlag_DEEP},
                                         FormatCase{PF_PixelFormat_ARGB128, 16, PF_WorldFlag_WRITEABLE}));

const PFWorldSuite2& suite2(const Call& c) {
    const auto& suite = c.need<PFWorldSuite2>(kPFWorldSuite, kPFWorldSuiteVersion2);
    c.release(kPFWorldSuite, kPFWorldSuiteVersion2);
    return suite;
}

TEST_P(WorldFormats, ANewWorldHasTheFormatSizeAndClearPixelsAskedFor) {
    Stage stage;
    stage.during([&](Call& c) {
        PF_EffectWorld world{};
        EXPECT_EQ(suite2(c).PF_NewWorld(c.ref(), 7, 5, 1, GetParam().format, &world), PF_Err_NONE);
        EXPECT_EQ(world.width, 7);
        EXPECT_EQ(world.height, 5);
        EXPECT_EQ(world.world_flags, GetParam().flags);
        EXPECT_EQ(world.extent_hint.right, 7);
        EXPECT_EQ(world.extent_hint.bottom, 5);
        for (A_long y = 0; y < 5; ++y) {
            for (A_long i = 0; i < 7 * GetParam().pixelBytes; ++i) {
                EXPECT_EQ(worldRow(world, y)[i], std::byte{0});
            }
        }
        PF_PixelFormat format = 0;
        EXPECT_EQ(suite2(c).PF_GetPixelFormat(&world, &format), PF_Err_NONE);
        EXPECT_EQ(format, GetParam().format);
        return suite2(c).PF_DisposeWorld(c.ref(), &world);
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST_P(WorldFormats, ACopyOfTheStructIsRecognised) {
    Stage stage;
    stage.during([&](Call& c) {
        PF_EffectWorld world{};
        suite2(c).PF_NewWorld(c.ref(), 2, 2, 0, GetParam().format, &world);
        const PF_EffectWorld copy = world;
        PF_PixelFormat format = 0;
        EXPECT_EQ(suite2(c).PF_GetPixelFormat(&copy, &format), PF_Err_NONE);
        EXPECT_EQ(format, GetParam().format);
        return suite2(c).PF_DisposeWorld(c.ref(), &world);
    });
}

TEST(World, PaddingAndGuardWidenTheRows) {
    judge::JudgeOptions options = Stage::audited();
    options.rowPadding = 20;
    options.rowGuard = 8;
    Stage stage(options);
    A_long rowBytes = 0;
    const auto measure = [&](Call& c) {
        PF_EffectWorld world{};
        c.utils().new_world(c.ref(), 3, 2, PF_NewWorldFlag_NONE, &world);
        rowBytes = world.rowbytes;
        return c.utils().dispose_world(c.ref(), &world);
    };
    stage.during(measure);
    EXPECT_EQ(rowBytes, 12 + 20 + 8);
    stage.host.options().audit = false;
    stage.during(measure);
    EXPECT_EQ(rowBytes, 12 + 20);
}

TEST(World, TheDataOffsetMisalignsTheFirstPixel) {
    judge::JudgeOptions options = Stage::audited();
    options.dataOffset = 4;
    Stage stage(options);
    stage.during([&](Call& c) {
        PF_EffectWorld world{};
        c.utils().new_world(c.ref(), 3, 2, PF_NewWorldFlag_NONE, &world);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(world.data) % 64, 4U);
        return c.utils().dispose_world(c.ref(), &world);
    });
}

TEST(World, UnclearedWorldsCanBePoisoned) {
    judge::JudgeOptions options = Stage::audited();
    options.poisonNewWorlds = true;
    Stage stage(options);
    stage.during([&](Call& c) {
        PF_EffectWorld world{};
        c.utils().new_world(c.ref(), 2, 1, PF_NewWorldFlag_NONE, &world);
        EXPECT_EQ(worldRow(world, 0)[0], std::byte{0xCD});
        EXPECT_EQ(worldRow(world, 0)[7], std::byte{0xCD});
        c.utils().dispose_world(c.ref(), &world);
        c.utils().new_world(c.ref(), 2, 1, PF_NewWorldFlag_CLEAR_PIXELS, &world);
        EXPECT_EQ(worldRow(world, 0)[0], std::byte{0});
        return c.utils().dispose_world(c.ref(), &world);
    });
}

TEST(World, WithoutAuditMemoryIsReused) {
    judge::JudgeOptions options;
    options.threads = 1;
    Stage stage(options);
    stage.during([&](Call& c) {
        PF_EffectWorld world{};
        c.utils().new_world(c.ref(), 64, 64, PF_NewWorldFlag_NONE, &world);
        const void* first = world.data;
        c.utils().dispose_world(c.ref(), &world);
        c.utils().new_world(c.ref(), 64, 64, PF_NewWorldFlag_NONE, &world);
        EXPECT_EQ(world.data, first);
        return c.utils().dispose_world(c.ref(), &world);
    });
    const Image input = patterned(PF_PixelFormat_ARGB32, 100, 90);
    Image output;
    stage.session().render(input, output);
    const std::size_t afterOne = stage.host.state().pool.pooledBytes();
    EXPECT_GE(afterOne, 2 * input.rowBytes() * 90); // the input's world and the output's
    stage.session().render(input, output);
    EXPECT_EQ(stage.host.state().pool.pooledBytes(), afterOne);
}

TEST(World, WithAuditNothingIsKept) {
    Stage stage;
    Image output;
    stage.session().render(patterned(PF_PixelFormat_ARGB32, 100, 90), output);
    EXPECT_EQ(stage.host.state().pool.pooledBytes(), 0U);
}

TEST(World, RefusesSizesOutOfRangeAndUnknownFormats) {
    Stage stage;
    stage.during([&](Call& c) {
        PF_EffectWorld world{};
        EXPECT_EQ(c.utils().new_world(c.ref(), 0, 1, 0, &world), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(c.utils().new_world(c.ref(), 30001, 1, 0, &world), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(c.utils().new_world(c.ref(), 1, -1, 0, &world), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(suite2(c).PF_NewWorld(c.ref(), 1, 1, 0, PF_PixelFormat_INVALID, &world),
                  PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(world.data, nullptr);
        return PF_Err_NONE;
    });
}

TEST(World, AWorldBeyondAllMemoryIsOutOfMemory) {
    judge::JudgeOptions options = Stage::audited();
    options.allowHuge = true;
    Stage stage(options);
    stage.during([&](Call& c) {
        PF_EffectWorld world{};
        const A_long most = std::numeric_limits<A_long>::max();
        EXPECT_EQ(c.utils().new_world(c.ref(), most, most, 0, &world), PF_Err_OUT_OF_MEMORY);
        return PF_Err_NONE;
    });
}

TEST(World, ForcedFormatIsReported) {
    judge::JudgeOptions options = Stage::audited();
    options.forcePixelFormat = PF_PixelFormat_INVALID;
    Stage stage(options);
    stage.during([&](Call& c) {
        PF_EffectWorld world{};
        c.utils().new_world(c.ref(), 1, 1, 0, &world);
        PF_PixelFormat format = 0;
        EXPECT_EQ(suite2(c).PF_GetPixelFormat(&world, &format), PF_Err_NONE);
        EXPECT_EQ(format, PF_PixelFormat_INVALID);
        return c.utils().dispose_world(c.ref(), &world);
    });
}

/// Two worlds of one size with a count in every byte of the first.
class Pair {
public:
    explicit Pair(Call& call, A_long width = 4, A_long height = 3) : call_(call) {
        call.utils().new_world(call.ref(), width, height, PF_NewWorldFlag_CLEAR_PIXELS, &from);
        call.utils().new_world(call.ref(), width, height, PF_NewWorldFlag_CLEAR_PIXELS, &to);
        for (A_long y = 0; y < height; ++y) {
            for (A_long i = 0; i < width * 4; ++i) {
                worldRow(from, y)[i] = static_cast<std::byte>(y * 16 + i + 1);
            }
        }
    }
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;
    ~Pair() {
        call_.utils().dispose_world(call_.ref(), &from);
        call_.utils().dispose_world(call_.ref(), &to);
    }

    PF_EffectWorld from{};
    PF_EffectWorld to{};

private:
    Call& call_;
};

PF_Rect rectOf(int left, int top, int right, int bottom) {
    PF_Rect rect{};
    rect.left = static_cast<decltype(rect.left)>(left);
    rect.top = static_cast<decltype(rect.top)>(top);
    rect.right = static_cast<decltype(rect.right)>(right);
    rect.bottom = static_cast<decltype(rect.bottom)>(bottom);
    return rect;
}

TEST(WorldCopy, NullRectanglesCopyTheWholeWorld) {
    Stage stage;
    stage.during([&](Call& c) {
        Pair pair(c);
        EXPECT_EQ(c.utils().copy(c.ref(), &pair.from, &pair.to, nullptr, nullptr), PF_Err_NONE);
        for (A_long y = 0; y < 3; ++y) {
            EXPECT_EQ(std::memcmp(worldRow(pair.from, y), worldRow(pair.to, y), 16), 0);
        }
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(WorldCopy, RectanglesMoveAPart) {
    Stage stage;
    stage.during([&](Call& c) {
        Pair pair(c);
        PF_Rect source = rectOf(0, 0, 2, 2);
        PF_Rect target = rectOf(1, 1, 3, 3);
        EXPECT_EQ(c.utils().copy(c.ref(), &pair.from, &pair.to, &source, &target), PF_Err_NONE);
        EXPECT_EQ(worldRow(pair.to, 1)[4], worldRow(pair.from, 0)[0]);
        EXPECT_EQ(worldRow(pair.to, 2)[11], worldRow(pair.from, 1)[7]);
        EXPECT_EQ(worldRow(pair.to, 0)[4], std::byte{0});
        EXPECT_EQ(worldRow(pair.to, 2)[12], std::byte{0});
        return PF_Err_NONE;
    });
}

TEST(WorldCopy, WhatLiesOutsideIsLeftOut) {
    Stage stage;
    stage.during([&](Call& c) {
        Pair pair(c);
        PF_Rect source = rectOf(-1, -1, 3, 3);
        PF_Rect target = rectOf(1, 1, 5, 5);
        EXPECT_EQ(c.utils().copy(c.ref(), &pair.from, &pair.to, &source, &target), PF_Err_NONE);
        EXPECT_EQ(worldRow(pair.to, 2)[8], worldRow(pair.from, 0)[0]);
        EXPECT_EQ(worldRow(pair.to, 1)[4], std::byte{0});
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(WorldCopy, OverlappingRowsOfOneWorldArriveWhole) {
    Stage stage;
    stage.during([&](Call& c) {
        Pair pair(c);
        PF_Rect source = rectOf(0, 0, 4, 2);
        PF_Rect target = rectOf(0, 1, 4, 3);
        EXPECT_EQ(c.utils().copy(c.ref(), &pair.from, &pair.from, &source, &target), PF_Err_NONE);
        EXPECT_EQ(worldRow(pair.from, 1)[0], std::byte{1});
        EXPECT_EQ(worldRow(pair.from, 2)[0], std::byte{17});
        return PF_Err_NONE;
    });
}

TEST(WorldCopy, RefusesOtherSizesAndFormats) {
    Stage stage;
    stage.during([&](Call& c) {
        Pair pair(c);
        Pair larger(c, 5, 3);
        EXPECT_EQ(c.utils().copy(c.ref(), &pair.from, &larger.to, nullptr, nullptr),
                  PF_Err_BAD_CALLBACK_PARAM);
        PF_EffectWorld deep{};
        c.utils().new_world(c.ref(), 4, 3, PF_NewWorldFlag_DEEP_PIXELS, &deep);
        EXPECT_EQ(c.utils().copy(c.ref(), &pair.from, &deep, nullptr, nullptr), PF_Err_BAD_CALLBACK_PARAM);
        return c.utils().dispose_world(c.ref(), &deep);
    });
}

TEST(WorldFill, NullColourIsTransparentBlack) {
    Stage stage;
    stage.during([&](Call& c) {
        Pair pair(c);
        EXPECT_EQ(c.utils().fill(c.ref(), nullptr, nullptr, &pair.from), PF_Err_NONE);
        for (A_long y = 0; y < 3; ++y) {
            for (A_long i = 0; i < 16; ++i) {
                EXPECT_EQ(worldRow(pair.from, y)[i], std::byte{0});
            }
        }
        return PF_Err_NONE;
    });
}

TEST(WorldFill, TheRectangleIsClipped) {
    Stage stage;
    stage.during([&](Call& c) {
        Pair pair(c);
        const PF_Pixel colour{9, 8, 7, 6};
        const PF_Rect rect = rectOf(2, 1, 100, 100);
        EXPECT_EQ(c.utils().fill(c.ref(), &colour, &rect, &pair.to), PF_Err_NONE);
        EXPECT_EQ(worldRow(pair.to, 1)[8], std::byte{9});
        EXPECT_EQ(worldRow(pair.to, 2)[15], std::byte{6});
        EXPECT_EQ(worldRow(pair.to, 1)[7], std::byte{0});
        EXPECT_EQ(worldRow(pair.to, 0)[8], std::byte{0});
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(WorldFill, AnEmptyRectangleTakesNothing) {
    Stage stage;
    stage.during([&](Call& c) {
        Pair pair(c);
        const auto content = [&pair] {
            std::vector<std::byte> bytes;
            for (A_long y = 0; y < 3; ++y) {
                bytes.insert(bytes.end(), worldRow(pair.from, y), worldRow(pair.from, y) + 16);
            }
            return bytes;
        };
        const std::vector<std::byte> before = content();
        EXPECT_NE(before, std::vector<std::byte>(before.size()));
        for (const PF_Rect& rect :
             {rectOf(2, 1, 2, 3), rectOf(3, 1, 1, 3), rectOf(0, 2, 4, 1), rectOf(50, 0, 60, 3)}) {
            EXPECT_EQ(c.utils().fill(c.ref(), nullptr, &rect, &pair.from), PF_Err_NONE);
        }
        EXPECT_EQ(content(), before);
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(WorldFill, ColoursAreScaledToTheFormatsWhite) {
    Stage stage;
    stage.during([&](Call& c) {
        const PF_Pixel colour{255, 128, 0, 51};
        PF_EffectWorld deep{};
        suite2(c).PF_NewWorld(c.ref(), 1, 1, 0, PF_PixelFormat_ARGB64, &deep);
        c.utils().fill(c.ref(), &colour, nullptr, &deep);
        PF_Pixel16 pixel16{};
        std::memcpy(&pixel16, worldRow(deep, 0), sizeof pixel16);
        EXPECT_EQ(pixel16.alpha, 32768);
        EXPECT_EQ(pixel16.red, 16448); // 128 / 255 of 32768, rounded
        EXPECT_EQ(pixel16.green, 0);
        PF_EffectWorld real{};
        suite2(c).PF_NewWorld(c.ref(), 1, 1, 0, PF_PixelFormat_ARGB128, &real);
        c.utils().fill(c.ref(), &colour, nullptr, &real);
        PF_PixelFloat pixel{};
        std::memcpy(&pixel, worldRow(real, 0), sizeof pixel);
        EXPECT_EQ(pixel.alpha, 1.0F);
        EXPECT_EQ(pixel.blue, 0.2F);
        suite2(c).PF_DisposeWorld(c.ref(), &deep);
        return suite2(c).PF_DisposeWorld(c.ref(), &real);
    });
}

} // namespace
} // namespace kovalune::test
