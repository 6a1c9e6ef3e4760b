#include "host/judge/GuardBytes.h"

#include <algorithm>
#include <cstring>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KOVALUNE_ADDRESS_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define KOVALUNE_ADDRESS_SANITIZER 1
#endif

#if defined(KOVALUNE_ADDRESS_SANITIZER)
#include <sanitizer/asan_interface.h>
#endif

namespace kovalune::host::judge {

void fillBytes(std::byte* bytes, std::size_t count, std::byte value) {
    if (count != 0) {
        std::memset(bytes, std::to_integer<int>(value), count);
    }
}

bool bytesIntact(const std::byte* bytes, std::size_t count, std::byte value) {
    return std::all_of(bytes, bytes + count, [value](std::byte b) { return b == value; });
}

void closeMemory([[maybe_unused]] const void* bytes, [[maybe_unused]] std::size_t count) {
#if defined(KOVALUNE_ADDRESS_SANITIZER)
    ASAN_POISON_MEMORY_REGION(bytes, count);
#endif
}

void openMemory([[maybe_unused]] const void* bytes, [[maybe_unused]] std::size_t count) {
#if defined(KOVALUNE_ADDRESS_SANITIZER)
    ASAN_UNPOISON_MEMORY_REGION(bytes, count);
#endif
}

} // namespace kovalune::host::judge
