// A library with nothing in it but the language's runtime, of which it uses what the plug-in uses: exceptions and
// objects that are made at the first call.

#include <windows.h>

namespace __gnu_cxx {
void __freeres();
}

extern "C" __declspec(dllexport) int throwAndCatch(int value) {
    static const int first = value;
    try {
        throw first;
    } catch (int caught) {
        return caught;
    }
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_DETACH) {
        __gnu_cxx::__freeres();
    }
    return TRUE;
}
