// An effect as the host sees it: one entry point, linked into the program or loaded from a shared object.
// A loaded module is unloaded when its EffectModule ends; sessions must have ended by then.
#pragma once

#include "hostapi/EntryPoint.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

namespace kovalune::host {

/// Whether an effect gets PF_Cmd_GLOBAL_SETDOWN at the end of a session. After it an effect may render no more for as long
/// as its code stays in the process, so one that serves several sessions in turn gets none.
enum class SetDown : uint8_t { kWithSession, kNever };

class EffectModule {
public:
    /// Throws HostError for a null pointer.
    static EffectModule linked(PF_EntryPoint entry, SetDown setDown = SetDown::kWithSession);

    /// Loads the file and takes its EntryPointFunc; throws HostError with the system's reason.
    static EffectModule load(const std::string& path, SetDown setDown = SetDown::kWithSession);

    EffectModule(EffectModule&&) noexcept = default;
    EffectModule& operator=(EffectModule&& other) noexcept;
    EffectModule(const EffectModule&) = delete;
    EffectModule& operator=(const EffectModule&) = delete;
    ~EffectModule();

    PF_EntryPoint entry() const { return entry_; }
    SetDown setDown() const { return setDown_; }
    const std::string& path() const { return path_; }     ///< empty if linked
    void* systemHandle() const { return library_.get(); } ///< null if linked

    /// Taken for every command but PF_Cmd_SMART_RENDER: effects read their parameters unguarded. All modules
    /// with the same entry point share one, since they share the effect's static variables.
    std::mutex& commandMutex() const { return *commandMutex_; }

private:
    struct Unload {
        void operator()(void* library) const noexcept;
    };

    EffectModule(PF_EntryPoint function, std::unique_ptr<void, Unload> library, std::string file,
                 SetDown setDown);

    std::unique_ptr<void, Unload> library_;
    PF_EntryPoint entry_ = nullptr;
    std::string path_;
    SetDown setDown_ = SetDown::kWithSession;
    std::shared_ptr<std::mutex> commandMutex_;
};

} // namespace kovalune::host
