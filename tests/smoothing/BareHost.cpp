#include "tests/smoothing/BareHost.h"

#include <cstring>

namespace kovalune::test {
namespace {

/// Suites are asked for without a reference, so the host made last answers.
BareHost* current = nullptr;

std::size_t pixelBytes(PF_PixelFormat format) {
    if (format == PF_PixelFormat_ARGB32) {
        return sizeof(PF_Pixel);
    }
    return format == PF_PixelFormat_ARGB64 ? sizeof(PF_Pixel16) : sizeof(PF_PixelFloat);
}

uint8_t* rowAt(const PF_EffectWorld& world, int32_t y) {
    return static_cast<uint8_t*>(static_cast<void*>(world.data)) + std::ptrdiff_t{y} * world.rowbytes;
}

} // namespace

BareHost::BareHost(PF_PixelFormat format) : format_(format) {
    current = this;
    basic_.AcquireSuite = acquire;
    basic_.ReleaseSuite = [](const char*, int32_t) -> int32_t { return 0; };
    transform_.copy = copy;
    world_.new_world = newWorld;
    world_.dispose_world = disposeWorld;
    in_.pica_basicP = &basic_;
    in_.effect_ref = static_cast<PF_ProgPtr>(static_cast<void*>(this));
}

BareHost& BareHost::from(PF_ProgPtr ref) {
    return *static_cast<BareHost*>(static_cast<void*>(ref));
}

int32_t BareHost::acquire(const char* name, int32_t version, const void** suite) {
    if (version != 1 || name == current->missingSuite) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (std::strcmp(name, kPFWorldTransformSuite) == 0) {
        *suite = &current->transform_;
        return 0;
    }
    if (std::strcmp(name, kPFWorldSuite) == 0) {
        *suite = &current->world_;
        return 0;
    }
    return PF_Err_BAD_CALLBACK_PARAM;
}

PF_Err BareHost::copy(PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect* /*fromRect*/,
                      PF_Rect* /*toRect*/) {
    BareHost& host = BareHost::from(ref);
    ++host.copies;
    const std::size_t bytes = static_cast<std::size_t>(from->width) * pixelBytes(host.format_);
    const int32_t rows = host.copyCode != PF_Err_NONE ? 1 : from->height;
    for (int32_t y = 0; y < rows; ++y) {
        std::memcpy(rowAt(*to, y), rowAt(*from, y), bytes);
    }
    return host.copyCode;
}

PF_Err BareHost::newWorld(PF_ProgPtr ref, A_long width, A_long height, PF_NewWorldFlags /*flags*/,
                          PF_EffectWorld* world) {
    BareHost& host = BareHost::from(ref);
    if (host.newWorldCode != PF_Err_NONE) {
        return host.newWorldCode;
    }
    ++host.worldsMade;
    host.lastWidth = width;
    host.lastHeight = height;
    const A_long used = width * static_cast<A_long>(sizeof(PF_Pixel));
    const A_long rowbytes = used + host.worldPadding;
    const auto bytes = static_cast<std::size_t>((height - 1) * rowbytes + used);
    std::unique_ptr<uint8_t[]> memory(new uint8_t[bytes]);
    std::memset(memory.get(), 0x5f, bytes);
    *world = {};
    world->width = width;
    world->height = height;
    world->rowbytes = rowbytes;
    world->data = static_cast<PF_PixelPtr>(static_cast<void*>(memory.get()));
    host.worlds_[world->data] = std::move(memory);
    return PF_Err_NONE;
}

PF_Err BareHost::disposeWorld(PF_ProgPtr ref, PF_EffectWorld* world) {
    BareHost& host = BareHost::from(ref);
    host.worlds_.erase(world->data);
    return host.disposeCode;
}

} // namespace kovalune::test
