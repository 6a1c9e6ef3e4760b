#include "host/SuiteTables.h"

#include "host/CallbackSupport.h"
#include "host/HandleCallbacks.h"
#include "host/ParamStore.h"
#include "host/ParamUi.h"
#include "host/WorldCallbacks.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace kovalune::host {

namespace {

constexpr int32_t kSuiteNotFound = 1; // any code but 0 says so

PF_Err updateParamUi(PF_ProgPtr ref, PF_ParamIndex index, const PF_ParamDef* def) {
    const auto arguments = [&] {
        const bool disabled = def != nullptr && (def->ui_flags & PF_PUI_DISABLED) != 0;
        return joined(index, disabled ? "disabled" : "enabled");
    };
    return countedCall("PF_UpdateParamUI", ref, arguments, [&](CommandContext& context) -> PF_Err {
        if (def == nullptr) {
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        // The interface promises nothing of the caller's copy after the call.
        handOver(context, const_cast<PF_ParamDef*>(def));
        const PF_Err code = context.params.updateUi(index, *def);
        if (code == PF_Err_NONE && !changesUiOnly(context.shownAt(index), *def)) {
            context.host.watch.misused(
                joined("PF_UpdateParamUI changes more than the look of parameter", index));
        }
        return code;
    });
}

const PFWorldSuite1& worldSuite1() {
    static const PFWorldSuite1 suite{newWorldByFlags, disposeWorld};
    return suite;
}

const PFWorldSuite2& worldSuite2() {
    static const PFWorldSuite2 suite{newWorldByFormat, disposeWorldSuite2, getPixelFormat};
    return suite;
}

const PFWorldTransformSuite1& worldTransformSuite1() {
    static const PFWorldTransformSuite1 suite = [] {
        PFWorldTransformSuite1 made{};
        made.composite_rect = Unsupported<"composite_rect">::call;
        made.blend = Unsupported<"blend">::call;
        made.convolve = Unsupported<"convolve">::call;
        made.copy = copyBySuite;
        made.copy_hq = copyHqBySuite;
        made.transfer_rect = Unsupported<"transfer_rect">::call;
        made.transform_world = Unsupported<"transform_world">::call;
        return made;
    }();
    return suite;
}

/// The slots that both versions have.
template <class Table>
Table fillMatteSlots() {
    Table made{};
    made.fill = fillBySuite;
    made.fill16 = Unsupported<"fill16">::call;
    made.premultiply = Unsupported<"premultiply">::call;
    made.premultiply_color = Unsupported<"premultiply_color">::call;
    made.premultiply_color16 = Unsupported<"premultiply_color16">::call;
    return made;
}

const PFFillMatteSuite1& fillMatteSuite1() {
    static const auto suite = fillMatteSlots<PFFillMatteSuite1>();
    return suite;
}

const PFFillMatteSuite2& fillMatteSuite2() {
    static const PFFillMatteSuite2 suite = [] {
        auto made = fillMatteSlots<PFFillMatteSuite2>();
        made.fill_float = Unsupported<"fill_float">::call;
        made.premultiply_color_float = Unsupported<"premultiply_color_float">::call;
        return made;
    }();
    return suite;
}

const PFHandleSuite1& handleSuite1() {
    static const PFHandleSuite1 suite{newHandle,     lockHandle, unlockHandle,
                                      disposeHandle, handleSize, resizeHandle};
    return suite;
}

/// The slots that all versions have.
template <class Table>
Table paramUtilsSlots() {
    Table made{};
    made.PF_UpdateParamUI = updateParamUi;
    made.PF_IsIdenticalCheckout = Unsupported<"PF_IsIdenticalCheckout">::call;
    made.PF_FindKeyframeTime = Unsupported<"PF_FindKeyframeTime">::call;
    made.PF_GetKeyframeCount = Unsupported<"PF_GetKeyframeCount">::call;
    made.PF_CheckoutKeyframe = Unsupported<"PF_CheckoutKeyframe">::call;
    made.PF_CheckinKeyframe = Unsupported<"PF_CheckinKeyframe">::call;
    made.PF_KeyIndexToTime = Unsupported<"PF_KeyIndexToTime">::call;
    return made;
}

const PFParamUtilsSuite1& paramUtilsSuite1() {
    static const PFParamUtilsSuite1 suite = [] {
        auto made = paramUtilsSlots<PFParamUtilsSuite1>();
        for (PF_UnusedSlot& slot : made.obsolete_state_functions) {
            slot = Unsupported<"obsolete state function">::call;
        }
        return made;
    }();
    return suite;
}

const PFParamUtilsSuite3& paramUtilsSuite3() {
    static const PFParamUtilsSuite3 suite = [] {
        auto made = paramUtilsSlots<PFParamUtilsSuite3>();
        made.PF_GetCurrentState = Unsupported<"PF_GetCurrentState">::call;
        made.PF_AreStatesIdentical = Unsupported<"PF_AreStatesIdentical">::call;
        return made;
    }();
    return suite;
}

struct SuiteEntry {
    std::string_view name;
    int32_t version;
    const void* table;
    bool ofThisEra; ///< offered without being told
};

const SuiteEntry* findSuite(std::string_view name, int32_t version) {
    constexpr int32_t kFillMatte = kPFFillMatteSuiteVersions[0];
    constexpr int32_t kHandles = kPFHandleSuiteVersions[0];
    constexpr int32_t kParamUtils = kPFParamUtilsSuiteVersions[0];
    static const std::array<SuiteEntry, 10> entries{{
        {kPFWorldSuite, 1, &worldSuite1(), true},
        {kPFWorldSuite, 2, &worldSuite2(), true},
        {kPFWorldTransformSuite, 1, &worldTransformSuite1(), true},
        {kPFFillMatteSuite, 1, &fillMatteSuite1(), kFillMatte == 1},
        {kPFFillMatteSuite, 2, &fillMatteSuite2(), kFillMatte == 2},
        {kPFHandleSuite, 1, &handleSuite1(), kHandles == 1},
        {kPFHandleSuite, 2, &handleSuite1(), kHandles == 2},
        {kPFParamUtilsSuite, 1, &paramUtilsSuite1(), kParamUtils == 1},
        {kPFParamUtilsSuite, 2, &paramUtilsSuite1(), kParamUtils == 2},
        {kPFParamUtilsSuite, 3, &paramUtilsSuite3(), kParamUtils == 3},
    }};
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const SuiteEntry& entry) {
        return entry.name == name && entry.version == version;
    });
    return found == entries.end() ? nullptr : &*found;
}

std::string_view nameOrNull(const char* name) {
    return name != nullptr ? name : "null";
}

int32_t acquireSuite(const char* name, int32_t version, const void** suite) {
    const std::string_view suiteName = nameOrNull(name);
    return countedCall(
        "AcquireSuite", [&] { return joined(suiteName, version); },
        [&](CommandContext& context) -> PF_Err {
            const SuiteEntry* entry = findSuite(suiteName, version);
            if (suite == nullptr || entry == nullptr ||
                !context.host.manners.offersSuite(suiteName, version) ||
                !(entry->ofThisEra || context.host.options.everySuiteVersion)) {
                return kSuiteNotFound;
            }
            context.host.suites.acquired(std::string(suiteName), version);
            *suite = entry->table;
            return PF_Err_NONE;
        });
}

int32_t releaseSuite(const char* name, int32_t version) {
    return shielded(int32_t{PF_Err_OUT_OF_MEMORY}, [&]() -> int32_t {
        CommandContext* context = currentContext();
        if (context == nullptr) {
            return PF_Err_INVALID_CALLBACK;
        }
        const std::string_view suiteName = nameOrNull(name);
        logCall(*context, "ReleaseSuite", [&] { return joined(suiteName, version); });
        if (context->host.suites.released(std::string(suiteName), version)) {
            return 0;
        }
        context->host.watch.misused("release of a suite that is not acquired: " + joined(suiteName, version));
        return kSuiteNotFound;
    });
}

int32_t isEqual(const char* first, const char* second) {
    return first != nullptr && second != nullptr && std::strcmp(first, second) == 0 ? 1 : 0;
}

} // namespace

SPBasicSuite* basicSuite() {
    static SPBasicSuite suite = [] {
        SPBasicSuite made{};
        made.AcquireSuite = acquireSuite;
        made.ReleaseSuite = releaseSuite;
        made.IsEqual = isEqual;
        made.AllocateBlock = Unsupported<"AllocateBlock">::call;
        made.FreeBlock = Unsupported<"FreeBlock">::call;
        made.ReallocateBlock = Unsupported<"ReallocateBlock">::call;
        made.Undefined = Unsupported<"Undefined">::call;
        return made;
    }();
    return &suite;
}

} // namespace kovalune::host
