// The system's call at loading and unloading of the plug-in's file.

#include "effect/frame/life/LoadRoutine.h"
#include "effect/platform/windows/Module.h"

#include <windows.h>

// The language's runtime, which every load of this file brings anew, takes memory for exceptions in need when it starts
// and gives it back only here. No header of it says so.
namespace __gnu_cxx {
void __freeres();
}

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID endOfProcess) {
    using kovalune::LoadReason;
    static_assert(static_cast<DWORD>(LoadReason::kProcessDetach) == DLL_PROCESS_DETACH &&
                  static_cast<DWORD>(LoadReason::kProcessAttach) == DLL_PROCESS_ATTACH &&
                  static_cast<DWORD>(LoadReason::kThreadAttach) == DLL_THREAD_ATTACH &&
                  static_cast<DWORD>(LoadReason::kThreadDetach) == DLL_THREAD_DETACH);
    if (reason == DLL_PROCESS_ATTACH) {
        kovalune::platform::keepModuleHandle(module);
    }
    const BOOL done = kovalune::loadRoutine(static_cast<LoadReason>(reason)) ? TRUE : FALSE;
    if (reason == DLL_PROCESS_DETACH && endOfProcess == nullptr) {
        __gnu_cxx::__freeres();
    }
    return done;
}
