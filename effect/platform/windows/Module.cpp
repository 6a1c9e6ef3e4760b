#include "effect/platform/windows/Module.h"

namespace kovalune::platform {
namespace {

// Written once, while the library is being loaded.
constinit void* keptModule = nullptr;

} // namespace

void keepModuleHandle(void* module) noexcept {
    keptModule = module;
}

void* moduleHandle() noexcept {
    return keptModule;
}

} // namespace kovalune::platform
