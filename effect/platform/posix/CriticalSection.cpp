#include "effect/platform/Platform.h"

namespace kovalune::platform {

CriticalSection::CriticalSection() = default;

CriticalSection::~CriticalSection() = default;

void CriticalSection::lock() {
    mutex_.lock();
}

void CriticalSection::unlock() {
    mutex_.unlock();
}

} // namespace kovalune::platform
