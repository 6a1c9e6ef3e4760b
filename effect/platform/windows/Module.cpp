#include "effect/platform/windows/Module.h"

#include "effect/platform/Platform.h"

#include <windows.h>

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

void* moduleOfFile(const char* path) {
    // A null name would stand for the host's program.
    const bool named = path != nullptr && *path != '\0';
    void* const module = named ? GetModuleHandleA(path) : nullptr;
    return module != nullptr ? module : moduleHandle();
}

} // namespace kovalune::platform
