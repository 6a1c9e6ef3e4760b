// No windows here: a dialog ends at once with 0, as if it had been closed.
#include "effect/platform/WindowCalls.h"

namespace kovalune::platform {

WindowCalls& windowCalls() {
    static WindowCalls calls = {
        [](const DialogRequest&) -> intptr_t { return 0; },
        [](Window, intptr_t) {},
        [](Window) -> Window { return nullptr; },
        [](Window, WindowRect&) { return false; },
        [](Window, int32_t, int32_t, int32_t, int32_t) {},
        [](Window, int32_t) -> Window { return nullptr; },
        [](Window, const char*) {},
        [](Window, bool) {},
    };
    return calls;
}

} // namespace kovalune::platform
