// Worlds of some megabytes, which the host fills, clears and copies with all its threads and whose memory comes from the
// system as zeros.

#include "host/Rects.h"
#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace kovalune::test {
using namespace host;
namespace {

constexpr A_long kWidth = 601;
constexpr A_long kHeight = 499;

using Bytes = std::vector<std::byte>;

struct Large {
    PF_PixelFormat format;
    bool audited;
    int rowPadding;
};

class LargeWorlds : public testing::TestWithParam<Large> {
protected:
    /// In a host of three threads.
    void during(const std::function<void(Call&)>& body) {
        judge::JudgeOptions options;
        options.audit = GetParam().audited;
        options.threads = 3;
        options.rowPadding = GetParam().rowPadding;
        Stage stage(options);
        stage.during([&](Call& c) {
            body(c);
            return PF_Err_NONE;
        });
        EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
    }

    std::size_t pixelBytes() const { return bytesPerPixel(GetParam().format); }
    std::size_t rowBytes() const { return kWidth * pixelBytes(); }
};

INSTANTIATE_TEST_SUITE_P(All, LargeWorlds,
                         testing::Values(Large{PF_PixelFormat_ARGB32, false, 0},
                                         Large{PF_PixelFormat_ARGB64, false, 12},
                                         Large{PF_PixelFormat_ARGB128, false, 0},
                                         Large{PF_PixelFormat_ARGB128, true, 20}));

class Held {
public:
    Held(Call& call, PF_PixelFormat format, bool cleared)
        : call_(call), suite_(call.need<PFWorldSuite2>(kPFWorldSuite, kPFWorldSuiteVersion2)) {
        call.release(kPFWorldSuite, kPFWorldSuiteVersion2);
        EXPECT_EQ(suite_.PF_NewWorld(call.ref(), kWidth, kHeight, cleared ? 1 : 0, format, &world),
                  PF_Err_NONE);
    }
    ~Held() { suite_.PF_DisposeWorld(call_.ref(), &world); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    std::byte* row(A_long y) {
        return static_cast<std::byte*>(static_cast<void*>(world.data)) + y * world.rowbytes;
    }

    /// Different in every row and every pixel of it.
    void scribble(std::size_t rowBytes, unsigned seed) {
        for (A_long y = 0; y < kHeight; ++y) {
            for (std::size_t i = 0; i < rowBytes; ++i) {
                row(y)[i] = static_cast<std::byte>(seed + static_cast<unsigned>(y) * 31 + i * 7 + i / 251);
            }
        }
    }

    std::vector<Bytes> rows(std::size_t rowBytes) {
        std::vector<Bytes> result;
        for (A_long y = 0; y < kHeight; ++y) {
            result.emplace_back(row(y), row(y) + rowBytes);
        }
        return result;
    }

    PF_EffectWorld world{};

private:
    Call& call_;
    const PFWorldSuite2& suite_;
};

PF_Rect rectOf(int left, int top, int right, int bottom) {
    PF_Rect rect{};
    rect.left = static_cast<decltype(rect.left)>(left);
    rect.top = static_cast<decltype(rect.top)>(top);
    rect.right = static_cast<decltype(rect.right)>(right);
    rect.bottom = static_cast<decltype(rect.bottom)>(bottom);
    return rect;
}

TEST_P(LargeWorlds, AClearedWorldIsClearInMemoryThatIsNewAndInMemoryThatWasUsed) {
    during([&](Call& c) {
        const std::vector<Bytes> zeros(kHeight, Bytes(rowBytes()));
        for (int round = 0; round < 3; ++round) {
            Held world(c, GetParam().format, true);
            EXPECT_TRUE(world.rows(rowBytes()) == zeros) << "round " << round;
            world.scribble(rowBytes(), 1);
        }
    });
}

TEST_P(LargeWorlds, AFillTakesItsRectangleAndNothingElse) {
    during([&](Call& c) {
        Held world(c, GetParam().format, false);
        const PF_Rect area = rectOf(3, 2, kWidth - 5, kHeight - 1);
        const PF_Pixel white{255, 255, 255, 255};
        for (const PF_Pixel* colour : {static_cast<const PF_Pixel*>(nullptr), &white}) {
            world.scribble(rowBytes(), 9);
            std::vector<Bytes> expected = world.rows(rowBytes());
            EXPECT_EQ(c.utils().fill(c.ref(), colour, &area, &world.world), PF_Err_NONE);
            const Bytes one(world.row(2) + 3 * pixelBytes(), world.row(2) + 4 * pixelBytes());
            EXPECT_TRUE(colour != nullptr || one == Bytes(pixelBytes()));
            for (A_long y = 2; y < kHeight - 1; ++y) {
                for (std::size_t x = 3; x < kWidth - 5; ++x) {
                    std::copy(one.begin(), one.end(),
                              expected[static_cast<std::size_t>(y)].begin() +
                                  static_cast<std::ptrdiff_t>(x * pixelBytes()));
                }
            }
            EXPECT_TRUE(world.rows(rowBytes()) == expected);
        }
    });
}

TEST_P(LargeWorlds, ACopyIsTheSourceInItsRectangleAndNothingElse) {
    during([&](Call& c) {
        Held source(c, GetParam().format, false);
        Held target(c, GetParam().format, false);
        source.scribble(rowBytes(), 3);
        target.scribble(rowBytes(), 200);
        EXPECT_EQ(c.utils().copy(c.ref(), &source.world, &target.world, nullptr, nullptr), PF_Err_NONE);
        EXPECT_TRUE(target.rows(rowBytes()) == source.rows(rowBytes()));

        target.scribble(rowBytes(), 77);
        std::vector<Bytes> expected = target.rows(rowBytes());
        PF_Rect from = rectOf(0, 0, kWidth - 9, kHeight - 4);
        PF_Rect to = rectOf(9, 4, kWidth, kHeight);
        EXPECT_EQ(c.utils().copy(c.ref(), &source.world, &target.world, &from, &to), PF_Err_NONE);
        for (A_long y = 4; y < kHeight; ++y) {
            std::copy_n(source.row(y - 4), (kWidth - 9) * pixelBytes(),
                        expected[static_cast<std::size_t>(y)].begin() +
                            static_cast<std::ptrdiff_t>(9 * pixelBytes()));
        }
        EXPECT_TRUE(target.rows(rowBytes()) == expected);
    });
}

TEST_P(LargeWorlds, ACopyInsideOneWorldReadsEveryPixelBeforeItIsOverwritten) {
    during([&](Call& c) {
        for (const int down : {1, -1, 0}) {
            Held world(c, GetParam().format, false);
            world.scribble(rowBytes(), 5);
            const std::vector<Bytes> before = world.rows(rowBytes());
            const int firstTop = std::max(-down, 0);
            PF_Rect from = rectOf(0, firstTop, kWidth - 1, kHeight - std::max(down, 0));
            PF_Rect to = rectOf(1, firstTop + down, kWidth, kHeight - std::max(down, 0) + down);
            EXPECT_EQ(c.utils().copy(c.ref(), &world.world, &world.world, &from, &to), PF_Err_NONE);
            for (A_long y = to.top; y < to.bottom; ++y) {
                const std::byte* const moved = before[static_cast<std::size_t>(y - down)].data();
                ASSERT_EQ(std::memcmp(world.row(y) + pixelBytes(), moved, rowBytes() - pixelBytes()), 0)
                    << "row " << y << ", moved by " << down;
            }
        }
    });
}

/// A picture that is copied into worlds of the host's own and back.
TEST_P(LargeWorlds, APictureGoesThroughAFrameUnchanged) {
    judge::JudgeOptions options;
    options.audit = GetParam().audited;
    options.threads = 3;
    options.rowPadding = GetParam().rowPadding;
    Stage stage(options);
    stage.script[PF_Cmd_RENDER] = [](Call& c) {
        return c.utils().copy(c.ref(), &c.params[0]->u.ld, c.output, nullptr, nullptr);
    };
    Image input(GetParam().format, kWidth, kHeight);
    for (std::size_t i = 0; i < input.rowBytes() * kHeight; ++i) {
        input.row(0)[i] = static_cast<std::byte>(i % 253);
    }
    RenderRequest request;
    request.flow = RenderFlow::kLegacy;
    Image output;
    EXPECT_TRUE(stage.session().render(input, output, request).ok());
    EXPECT_TRUE(output == input);
    Image lent(GetParam().format, kWidth, kHeight);
    EXPECT_TRUE(stage.session().render(input.view(), lent.view(), request).ok());
    EXPECT_TRUE(lent == input);
}

} // namespace
} // namespace kovalune::test
