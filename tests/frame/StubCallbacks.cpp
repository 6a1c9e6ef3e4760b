// The stub's callbacks as plain C functions.

#include "tests/frame/StubHost.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <sstream>

namespace kovalune::test {
namespace {

template <class... Values>
std::string words(const Values&... values) {
    std::ostringstream text;
    const char* gap = "";
    ((text << gap << values, gap = " "), ...);
    return text.str();
}

// ---- Suites

/// By an effect of this era, if only as the second choice.
bool isAskedFor(const std::string& name, int32_t version) {
    const auto among = [version](const auto& versions) {
        return std::find(versions.begin(), versions.end(), version) != versions.end();
    };
    if (name == kPFFillMatteSuite) {
        return among(kPFFillMatteSuiteVersions);
    }
    if (name == kPFHandleSuite) {
        return among(kPFHandleSuiteVersions);
    }
    if (name == kPFParamUtilsSuite) {
        return among(kPFParamUtilsSuiteVersions);
    }
    return stubSuite(suiteText(name.c_str(), version)) != nullptr;
}

int32_t acquireSuite(const char* name, int32_t version, const void** table) {
    StubHost& host = stubHost();
    const std::string suite = suiteText(name, version);
    if (const PF_Err err = host.enter("AcquireSuite", suite)) {
        return err;
    }
    EXPECT_TRUE(isAskedFor(name, version)) << suite << " is no suite of this effect";
    if (host.missingSuites.count(suite) != 0 || stubSuite(suite) == nullptr) {
        return PF_Err_INVALID_INDEX;
    }
    if (host.emptySuites.count(suite) != 0) {
        *table = nullptr;
        return 0;
    }
    *table = stubSuite(suite);
    ++host.heldSuites[suite];
    ++host.suitesHeld;
    return 0;
}

int32_t releaseSuite(const char* name, int32_t version) {
    StubHost& host = stubHost();
    const std::string suite = suiteText(name, version);
    host.enter("ReleaseSuite", suite);
    EXPECT_GT(host.heldSuites[suite], 0) << suite << " released, but not held";
    --host.heldSuites[suite];
    --host.suitesHeld;
    return 0;
}

// ---- Handles: the memory moves whenever a handle is locked anew, so that stale addresses show

PF_Handle newHandle(A_HandleSize size) {
    StubHost& host = stubHost();
    if (host.enter("host_new_handle", words(size)) != 0) {
        return nullptr;
    }
    auto block = std::make_unique<StubHost::Block>();
    block->size = static_cast<std::size_t>(size);
    block->bytes = std::make_unique<std::max_align_t[]>(block->size / sizeof(std::max_align_t) + 1);
    block->memory = block->bytes.get();
    const PF_Handle handle = &block->memory;
    host.blocks.emplace(handle, std::move(block));
    return handle;
}

void* lockHandle(PF_Handle handle) {
    StubHost& host = stubHost();
    if (host.enter("host_lock_handle", {}) != 0) {
        return nullptr;
    }
    StubHost::Block& block = host.blockOf(handle);
    if (block.locks++ == 0) {
        auto moved = std::make_unique<std::max_align_t[]>(block.size / sizeof(std::max_align_t) + 1);
        std::memcpy(moved.get(), block.memory, block.size);
        block.bytes = std::move(moved);
        block.memory = block.bytes.get();
    }
    return block.memory;
}

void unlockHandle(PF_Handle handle) {
    StubHost& host = stubHost();
    host.enter("host_unlock_handle", {});
    EXPECT_GT(host.blockOf(handle).locks, 0) << "unlocked, but not locked";
    --host.blockOf(handle).locks;
}

void disposeHandle(PF_Handle handle) {
    StubHost& host = stubHost();
    host.enter("host_dispose_handle", {});
    EXPECT_EQ(host.blockOf(handle).locks, 0) << "disposed of while locked";
    host.blocks.erase(handle);
}

// ---- Worlds

PF_Err makeWorld(A_long width, A_long height, int pixelBytes, PF_WorldFlags flags, PF_EffectWorld* world) {
    const std::size_t bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                              static_cast<std::size_t>(pixelBytes);
    auto pixels = std::make_unique<std::max_align_t[]>(bytes / sizeof(std::max_align_t) + 1);
    *world = {};
    world->width = width;
    world->height = height;
    world->rowbytes = width * pixelBytes;
    world->world_flags = flags | PF_WorldFlag_WRITEABLE;
    world->data = static_cast<PF_Pixel*>(static_cast<void*>(pixels.get()));
    stubHost().worlds.emplace(world->data, std::move(pixels));
    return PF_Err_NONE;
}

PF_Err newWorld1(PF_ProgPtr ref, A_long width, A_long height, PF_NewWorldFlags flags, PF_EffectWorld* world) {
    if (const PF_Err err = stubHost().enter("new_world", words(width, height, flags), ref)) {
        return err;
    }
    const bool deep = (flags & PF_NewWorldFlag_DEEP_PIXELS) != 0;
    return makeWorld(width, height, deep ? 8 : 4, deep ? PF_WorldFlag_DEEP : 0, world);
}

PF_Err newWorld2(PF_ProgPtr ref, A_long width, A_long height, PF_Boolean clear, PF_PixelFormat format,
                 PF_EffectWorld* world) {
    const std::string arguments = words(width, height, int{clear}, format);
    if (const PF_Err err = stubHost().enter("PF_NewWorld", arguments, ref)) {
        return err;
    }
    const bool deep = format == PF_PixelFormat_ARGB64;
    return makeWorld(width, height, 16, deep ? PF_WorldFlag_DEEP : 0, world);
}

PF_Err endWorld(const char* call, PF_ProgPtr ref, PF_EffectWorld* world) {
    if (const PF_Err err = stubHost().enter(call, {}, ref)) {
        return err;
    }
    EXPECT_EQ(stubHost().worlds.erase(world->data), 1U) << "no live world";
    return PF_Err_NONE;
}

PF_Err disposeWorld1(PF_ProgPtr ref, PF_EffectWorld* world) {
    return endWorld("dispose_world", ref, world);
}
PF_Err disposeWorld2(PF_ProgPtr ref, PF_EffectWorld* world) {
    return endWorld("PF_DisposeWorld", ref, world);
}

PF_Err getPixelFormat(const PF_EffectWorld*, PF_PixelFormat* format) {
    if (const PF_Err err = stubHost().enter("PF_GetPixelFormat", {})) {
        return err;
    }
    *format = stubHost().reportedFormat;
    return PF_Err_NONE;
}

PF_Err noteCopy(const char* call, PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to,
                const PF_Rect* fromRect, const PF_Rect* toRect) {
    StubHost& host = stubHost();
    host.worldCalls.push_back({call, from, to, fromRect == nullptr && toRect == nullptr, {}});
    return host.enter(call, {}, ref);
}

PF_Err utilCopy(PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect* fromRect,
                PF_Rect* toRect) {
    return noteCopy("utils.copy", ref, from, to, fromRect, toRect);
}
PF_Err suiteCopy(PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect* fromRect,
                 PF_Rect* toRect) {
    return noteCopy("copy", ref, from, to, fromRect, toRect);
}
PF_Err suiteCopyHq(PF_ProgPtr ref, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect* fromRect,
                   PF_Rect* toRect) {
    return noteCopy("copy_hq", ref, from, to, fromRect, toRect);
}

PF_Err suiteFill(PF_ProgPtr ref, const PF_Pixel* colour, const PF_Rect* area, PF_EffectWorld* world) {
    StubHost& host = stubHost();
    EXPECT_NE(area, nullptr);
    host.worldCalls.push_back(
        {"fill", nullptr, world, colour == nullptr, area != nullptr ? *area : PF_Rect{}});
    return host.enter("fill", {}, ref);
}

// ---- Parameters

PF_Err addParam(PF_ProgPtr ref, PF_ParamIndex index, PF_ParamDef* def) {
    if (const PF_Err err = stubHost().enter("add_param", words(index, def->uu.id), ref)) {
        return err;
    }
    stubHost().params.push_back(*def);
    return PF_Err_NONE;
}

PF_Err checkoutParam(PF_ProgPtr ref, PF_ParamIndex index, A_long time, A_long step, A_u_long scale,
                     PF_ParamDef* def) {
    StubHost& host = stubHost();
    if (const PF_Err err = host.enter("checkout_param", words(index, time, step, scale), ref)) {
        std::memset(def, 0x77, sizeof *def);
        return err;
    }
    *def = host.params.at(static_cast<std::size_t>(index));
    return PF_Err_NONE;
}

PF_Err checkinParam(PF_ProgPtr ref, PF_ParamDef* def) {
    stubHost().checkedIn.push_back(def);
    return stubHost().enter("checkin_param", {}, ref);
}

PF_Err updateParamUi(PF_ProgPtr ref, PF_ParamIndex index, const PF_ParamDef* def) {
    stubHost().uiUpdates.push_back({index, *def});
    return stubHost().enter("PF_UpdateParamUI", words(index), ref);
}

// ---- SmartFX

PF_Err checkoutLayer(PF_ProgPtr ref, PF_ParamIndex index, A_long id, const PF_RenderRequest* request,
                     A_long time, A_long step, A_u_long scale, PF_CheckoutResult* result) {
    StubHost& host = stubHost();
    host.lastRequest = *request;
    *result = host.layerAnswer;
    return host.enter("checkout_layer", words(index, id, time, step, scale), ref);
}

PF_Err checkoutLayerPixels(PF_ProgPtr ref, A_long id, PF_EffectWorld** pixels) {
    if (const PF_Err err = stubHost().enter("checkout_layer_pixels", words(id), ref)) {
        return err;
    }
    *pixels = stubHost().inputWorld;
    return PF_Err_NONE;
}

PF_Err checkinLayerPixels(PF_ProgPtr ref, A_long id) {
    return stubHost().enter("checkin_layer_pixels", words(id), ref);
}

PF_Err checkoutOutput(PF_ProgPtr ref, PF_EffectWorld** output) {
    if (const PF_Err err = stubHost().enter("checkout_output", {}, ref)) {
        return err;
    }
    *output = stubHost().outputWorld;
    return PF_Err_NONE;
}

const PFWorldSuite1 worldSuite1 = {newWorld1, disposeWorld1};
const PFWorldSuite2 worldSuite2 = {newWorld2, disposeWorld2, getPixelFormat};
const PFHandleSuite1 handleSuite = {newHandle, lockHandle, unlockHandle, disposeHandle, nullptr, nullptr};
const PFFillMatteSuite1 fillSuite = {suiteFill, nullptr, nullptr, nullptr, nullptr};
const PFParamUtilsSuite1 paramSuite = {
    updateParamUi, {nullptr, nullptr, nullptr}, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
const PFWorldTransformSuite1 transformSuite = {nullptr,     nullptr, nullptr, suiteCopy,
                                               suiteCopyHq, nullptr, nullptr};

// ---- Platform

PF_Err getPlatformData(PF_ProgPtr reference, PF_PlatDataID which, void* data) {
    StubHost& host = stubHost();
    if (const PF_Err err = host.enter("get_platform_data", words(which), reference)) {
        return err;
    }
    if (which == PF_PlatData_MAIN_WND) {
        std::memcpy(data, &host.mainWindow, sizeof host.mainWindow);
        return PF_Err_NONE;
    }
    EXPECT_EQ(which, PF_PlatData_EXE_FILE_PATH);
    constexpr std::size_t kRoom = 260;
    std::memcpy(data, host.plugInPath.c_str(), std::min(host.plugInPath.size() + 1, kRoom));
    return PF_Err_NONE;
}

} // namespace

const void* stubSuite(const std::string& suite) {
    static const std::map<std::string, const void*> tables = {
        {"PF World Suite 1", &worldSuite1},
        {"PF World Suite 2", &worldSuite2},
        {"PF World Transform Suite 1", &transformSuite},
        {kHandleSuiteText, &handleSuite},
        {kFillMatteSuiteText, &fillSuite},
        {kParamUtilsSuiteText, &paramSuite},
    };
    const auto found = tables.find(suite);
    return found != tables.end() ? found->second : nullptr;
}

void connectStub(StubHost& host) {
    host.basic.AcquireSuite = acquireSuite;
    host.basic.ReleaseSuite = releaseSuite;
    host.in.inter.add_param = addParam;
    host.in.inter.checkout_param = checkoutParam;
    host.in.inter.checkin_param = checkinParam;
    host.utils.copy = utilCopy;
    host.utils.get_platform_data = getPlatformData;
    host.utils.host_new_handle = newHandle;
    host.utils.host_lock_handle = lockHandle;
    host.utils.host_unlock_handle = unlockHandle;
    host.utils.host_dispose_handle = disposeHandle;
    host.utils.ansi.sprintf = std::sprintf;
    host.utils.ansi.strcpy = std::strcpy;
    host.preRender.checkout_layer = checkoutLayer;
    host.smartRender.checkout_layer_pixels = checkoutLayerPixels;
    host.smartRender.checkin_layer_pixels = checkinLayerPixels;
    host.smartRender.checkout_output = checkoutOutput;
}

} // namespace kovalune::test
