#include "effect/platform/Platform.h"

namespace kovalune::platform {

void CriticalSection::lock() {
    mutex_.lock();
}

void CriticalSection::unlock() {
    mutex_.unlock();
}

} // namespace kovalune::platform
