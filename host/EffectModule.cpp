#include "host/EffectModule.h"

#include "host/HostError.h"

#include <map>
#include <utility>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace kovalune::host {

namespace {

std::shared_ptr<std::mutex> sharedCommandMutex(PF_EntryPoint entry) {
    static std::mutex registryMutex;
    static std::map<PF_EntryPoint, std::weak_ptr<std::mutex>, std::less<>> registry;
    const std::lock_guard lock(registryMutex);
    std::weak_ptr<std::mutex>& slot = registry[entry];
    std::shared_ptr<std::mutex> mutex = slot.lock();
    if (!mutex) {
        mutex = std::make_shared<std::mutex>();
        slot = mutex;
    }
    return mutex;
}

constexpr const char* kEntryName = "EntryPointFunc";

#if defined(_WIN32)

void* openLibrary(const std::string& path) {
    return LoadLibraryA(path.c_str());
}

std::string systemReason() {
    return "system error " + std::to_string(GetLastError());
}

PF_EntryPoint findEntry(void* library) {
    // The detour over void* keeps the compiler from warning about the change of the function's type.
    return reinterpret_cast<PF_EntryPoint>(
        reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), kEntryName)));
}

#else

void* openLibrary(const std::string& path) {
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

std::string systemReason() {
    const char* reason = dlerror();
    return reason != nullptr ? reason : "no reason given";
}

PF_EntryPoint findEntry(void* library) {
    return reinterpret_cast<PF_EntryPoint>(dlsym(library, kEntryName));
}

#endif

} // namespace

void EffectModule::Unload::operator()(void* library) const noexcept {
#if defined(_WIN32)
    FreeLibrary(static_cast<HMODULE>(library));
#else
    dlclose(library);
#endif
}

EffectModule::EffectModule(PF_EntryPoint function, std::unique_ptr<void, Unload> library, std::string file,
                           SetDown setDown)
    : library_(std::move(library)), entry_(function), path_(std::move(file)), setDown_(setDown),
      commandMutex_(sharedCommandMutex(function)) {}

EffectModule& EffectModule::operator=(EffectModule&& other) noexcept = default;
EffectModule::~EffectModule() = default;

EffectModule EffectModule::linked(PF_EntryPoint entry, SetDown setDown) {
    if (entry == nullptr) {
        throw HostError("an effect module needs an entry point");
    }
    return EffectModule(entry, nullptr, {}, setDown);
}

EffectModule EffectModule::load(const std::string& path, SetDown setDown) {
    std::unique_ptr<void, Unload> library(openLibrary(path));
    if (!library) {
        throw HostError("cannot load " + path + ": " + systemReason());
    }
    const PF_EntryPoint entry = findEntry(library.get());
    if (entry == nullptr) {
        throw HostError(path + " has no " + kEntryName);
    }
    return EffectModule(entry, std::move(library), path, setDown);
}

} // namespace kovalune::host
