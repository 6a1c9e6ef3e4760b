// The way from a frame to the report that a tool asked for, without that a host or the plug-in's file knows of it.
#pragma once

#include "effect/Kovalune.h"

#include <atomic>

namespace kovalune {

/// The report that the calling thread's frames are to fill; may be null.
using ReportSource = FrameReport* (*)();

/// Null until a tool of this process asks for the first report, and always in the plug-in's own file: so that file needs
/// no storage of its own for each of a host's threads. It is only ever set to one function.
inline constinit std::atomic<ReportSource> reportSource = nullptr;

/// Of the frame that begins on this thread; null where nobody asked.
inline FrameReport* askedReport() {
    const ReportSource source = reportSource.load(std::memory_order_acquire);
    return source != nullptr ? source() : nullptr;
}

} // namespace kovalune
