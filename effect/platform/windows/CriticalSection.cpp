#include "effect/platform/Platform.h"

#include <windows.h>

namespace kovalune::platform {

static_assert(sizeof(SRWLOCK) == sizeof(void*) && alignof(SRWLOCK) == alignof(void*),
              "the header keeps a slim lock as one pointer");

void CriticalSection::lock() {
    AcquireSRWLockExclusive(reinterpret_cast<SRWLOCK*>(&lock_));
}

void CriticalSection::unlock() {
    ReleaseSRWLockExclusive(reinterpret_cast<SRWLOCK*>(&lock_));
}

} // namespace kovalune::platform
