// How much a sweep does: under a sanitizer, where each case costs ten times as much, a part of it.
#pragma once

namespace kovalune::test {

#ifdef KOVALUNE_SANITIZED
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

/// Of so many random cases those that are worth their time.
constexpr int cases(int count) {
    constexpr int kPart = 4;
    return kSanitized ? (count + kPart - 1) / kPart : count;
}

} // namespace kovalune::test
