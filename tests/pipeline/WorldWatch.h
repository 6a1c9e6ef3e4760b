// Watches the scratch worlds that code under test has made for it.
#pragma once

#include "tests/support/StrictHost.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kovalune::test {

/// While it lives, version 2 of the world suite goes through it. One at a time in a program; worlds must not
/// outlive it.
class WorldWatch {
public:
    struct Made {
        PF_EffectWorld* world;
        A_long width;
        A_long height;
        bool cleared;
        PF_PixelFormat format;
    };

    explicit WorldWatch(StrictHost& host);
    ~WorldWatch();
    WorldWatch(const WorldWatch&) = delete;
    WorldWatch& operator=(const WorldWatch&) = delete;

    /// From here on worlds that need not be cleared come with this byte in each of their pixels' bytes.
    void fillUncleared(uint8_t content) { content_ = content; }

    const std::vector<Made>& made() const { return made_; }
    const std::vector<PF_EffectWorld*>& disposed() const { return disposed_; }

private:
    static PF_Err newWorld(PF_ProgPtr ref, A_long width, A_long height, PF_Boolean clear,
                           PF_PixelFormat format, PF_EffectWorld* world);
    static PF_Err disposeWorld(PF_ProgPtr ref, PF_EffectWorld* world);
    static int32_t acquire(const char* name, int32_t version, const void** suite);

    StrictHost& host_;
    SPBasicSuite* basicBefore_;
    SPBasicSuite basic_;
    PFWorldSuite2 suite_ = {};
    const PFWorldSuite2* hostSuite_ = nullptr;
    std::optional<uint8_t> content_;
    std::vector<Made> made_;
    std::vector<PF_EffectWorld*> disposed_;
};

} // namespace kovalune::test
