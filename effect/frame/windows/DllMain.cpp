// The system's call at loading and unloading of the plug-in's file.

#include "effect/frame/LoadRoutine.h"
#include "effect/platform/windows/Module.h"

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    using kovalune::LoadReason;
    static_assert(static_cast<DWORD>(LoadReason::kProcessDetach) == DLL_PROCESS_DETACH &&
                  static_cast<DWORD>(LoadReason::kProcessAttach) == DLL_PROCESS_ATTACH &&
                  static_cast<DWORD>(LoadReason::kThreadAttach) == DLL_THREAD_ATTACH &&
                  static_cast<DWORD>(LoadReason::kThreadDetach) == DLL_THREAD_DETACH);
    if (reason == DLL_PROCESS_ATTACH) {
        kovalune::platform::keepModuleHandle(module);
    }
    return kovalune::loadRoutine(static_cast<LoadReason>(reason)) ? TRUE : FALSE;
}
