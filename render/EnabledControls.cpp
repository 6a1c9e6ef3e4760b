#include "render/EnabledControls.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kovalune::render {

std::vector<bool> enabledControls(host::Session& session) {
    // Without a first word of the input layer's value all of Base is grey.
    const auto withLayer = [](host::CommandFrame& frame) {
        constexpr int32_t kAny = 1;
        if (!frame.params.empty()) {
            std::memcpy(&frame.params[0].u, &kAny, sizeof kAny);
        }
    };
    static_cast<void>(session.run(PF_Cmd_UPDATE_PARAMS_UI, nullptr, withLayer));
    std::vector<bool> enabled(session.params().size(), true);
    for (std::size_t index = 1; index < enabled.size(); ++index) {
        enabled[index] = session.enabled(static_cast<int>(index));
    }
    return enabled;
}

} // namespace kovalune::render
