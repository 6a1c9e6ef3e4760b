// The handle of the module that holds this code: the plug-in's own file, where its resources are. The load
// routine keeps it; a program that has the code linked in has none.
#pragma once

namespace kovalune::platform {

void keepModuleHandle(void* module) noexcept;

/// Null as long as none was kept.
void* moduleHandle() noexcept;

} // namespace kovalune::platform
