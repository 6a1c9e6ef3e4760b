// The effect's table, built once a process, and its registration with a stub host.
#pragma once

#include "effect/params/ParamRegistry.h"
#include "effect/params/ParamTable.h"
#include "tests/frame/StubHost.h"

namespace kovalune::test {

/// The registry with the effect's table in it.
inline ParamRegistry& builtTable() {
    static const bool built = [] {
        buildParamTable();
        return true;
    }();
    static_cast<void>(built);
    return paramRegistry();
}

/// Registers all parameters under the section; the first failure, or 0.
inline PF_Err registerTable(StubHost& host, const char* defaultsPath, const char* section = "Version=1.0") {
    ParamRegistry& registry = builtTable();
    registry.setSectionName(section);
    for (BaseParam* const param : registry.byIndex()) {
        const PF_Err err =
            param != nullptr ? param->addToHost(&host.in, param->diskId, defaultsPath) : PF_Err{0};
        if (err != PF_Err_NONE) {
            return err;
        }
    }
    return PF_Err_NONE;
}

} // namespace kovalune::test
