// The semaphores of the language's runtime. For locks of its own it makes one or another when it is first needed, and
// never closes it: each load of this file, which brings the runtime anew, would leave some with the process. The linker
// leads the runtime's calls here (--wrap), and what is still open is closed after everything else of this file has ended.

#include <array>
#include <windows.h>

// On 32-bit Windows a symbol tells the bytes of its arguments.
#ifdef _WIN64
#define KOVALUNE_IMPORT(prefix, name, bytes) #prefix "__imp_" #name
#else
#define KOVALUNE_IMPORT(prefix, name, bytes) "_" #prefix "_imp__" #name "@" #bytes
#endif

extern "C" {
// What the system's loader fills in.
extern decltype(&CreateSemaphoreW)
    const systemCreateSemaphore asm(KOVALUNE_IMPORT(__real_, CreateSemaphoreW, 16));
extern decltype(&CloseHandle) const systemCloseHandle asm(KOVALUNE_IMPORT(__real_, CloseHandle, 4));
}

namespace {

/// More than the runtime makes. One that finds no place stays open.
std::array<HANDLE, 16> openSemaphores;

/// Whether `handle` now stands where `expected` stood.
bool replaceOpen(HANDLE expected, HANDLE handle) {
    for (HANDLE& place : openSemaphores) {
        if (InterlockedCompareExchangePointer(&place, handle, expected) == expected) {
            return true;
        }
    }
    return false;
}

HANDLE WINAPI createAndKeep(LPSECURITY_ATTRIBUTES attributes, LONG first, LONG most, LPCWSTR name) {
    const HANDLE made = systemCreateSemaphore(attributes, first, most, name);
    if (made != nullptr) {
        replaceOpen(nullptr, made);
    }
    return made;
}

BOOL WINAPI closeAndForget(HANDLE handle) {
    if (handle != nullptr) {
        replaceOpen(handle, nullptr);
    }
    return systemCloseHandle(handle);
}

struct OpenSemaphores {
    ~OpenSemaphores() {
        for (HANDLE& place : openSemaphores) {
            if (const HANDLE left = InterlockedExchangePointer(&place, nullptr); left != nullptr) {
                systemCloseHandle(left);
            }
        }
    }
};

// Made before all else, so that it ends last: the runtime may close some itself.
[[gnu::init_priority(101)]] OpenSemaphores closedAtTheEnd;

} // namespace

extern "C" {
extern const decltype(&CreateSemaphoreW) runtimeCreateSemaphore asm(KOVALUNE_IMPORT(__wrap_, CreateSemaphoreW,
                                                                                    16));
extern const decltype(&CloseHandle) runtimeCloseHandle asm(KOVALUNE_IMPORT(__wrap_, CloseHandle, 4));
constexpr decltype(&CreateSemaphoreW) runtimeCreateSemaphore = createAndKeep;
constexpr decltype(&CloseHandle) runtimeCloseHandle = closeAndForget;
}
