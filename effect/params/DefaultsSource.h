// The way from the registration of the parameters to a tool's wish to have none of the remembered defaults, without that a
// host or the plug-in's file knows of it.
#pragma once

#include <atomic>

namespace kovalune {

/// Whether the calling thread's effects are to start from the values of their own table.
using FactorySource = bool (*)();

/// Null until a tool of this process asks for that the first time, and always in the plug-in's own file: so that file needs no
/// storage of its own for each of a host's threads. It is only ever set to one function.
inline constinit std::atomic<FactorySource> factorySource = nullptr;

inline bool areFactoryDefaultsAsked() {
    const FactorySource source = factorySource.load(std::memory_order_acquire);
    return source != nullptr && source();
}

} // namespace kovalune
