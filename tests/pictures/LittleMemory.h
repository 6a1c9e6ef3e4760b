// Work with too little memory, then with a little more, and so on until it is enough.
#pragma once

#include <functional>

namespace kovalune::test {

/// Success is what is wanted: std::bad_alloc several times, then no exception.
enum class LittleMemoryEnd { kCrash, kSuccess = 10, kEnoughAtOnce, kFailure, kCannotLimit };

/// Runs `body` again and again in a process of its own with more and more memory. It may throw std::bad_alloc; a
/// Failure ends the process. Not for builds with sanitizers, which need their address space for themselves.
LittleMemoryEnd endWithLittleMemory(const std::function<void()>& body);

} // namespace kovalune::test
