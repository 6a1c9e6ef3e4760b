// Not a slim lock: a thread that enters one again waits for itself for ever.
#include "effect/platform/Platform.h"

#include <new>
#include <windows.h>

namespace kovalune::platform {
namespace {

CRITICAL_SECTION* sectionIn(void** memory) {
    return std::launder(reinterpret_cast<CRITICAL_SECTION*>(memory));
}

} // namespace

CriticalSection::CriticalSection() {
    static_assert(sizeof section_ >= sizeof(CRITICAL_SECTION) && alignof(void*) >= alignof(CRITICAL_SECTION),
                  "the header keeps room for the system's critical section");
    InitializeCriticalSection(new (section_) CRITICAL_SECTION);
}

CriticalSection::~CriticalSection() {
    DeleteCriticalSection(sectionIn(section_));
}

void CriticalSection::lock() {
    EnterCriticalSection(sectionIn(section_));
}

void CriticalSection::unlock() {
    LeaveCriticalSection(sectionIn(section_));
}

} // namespace kovalune::platform
