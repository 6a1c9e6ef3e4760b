#include "effect/platform/Platform.h"

#include <mbctype.h>
#include <windows.h>

namespace kovalune::platform {

std::string commandLine() {
    const char* const line = GetCommandLineA();
    return line != nullptr ? line : std::string();
}

bool shiftKeyDown() {
    return GetKeyState(VK_SHIFT) < 0;
}

unsigned activeCodePage() {
    return static_cast<unsigned>(_getmbcp());
}

} // namespace kovalune::platform
