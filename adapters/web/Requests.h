// What a page asks the engine for, as JSON, and the answers.
#pragma once

#include "adapters/web/Engine.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kovalune::web {

struct Answer {
    std::string json;           ///< an object; "error" and nothing else where the request failed
    std::vector<uint8_t> bytes; ///< pixels or a file, as the request has it; else empty
};

/// `request` is an object whose "op" names what is asked for; `bytes` is the file of "open". Never throws but for want of memory
/// for the answer itself.
Answer answer(Engine& engine, const std::string& request, std::span<const uint8_t> bytes);

} // namespace kovalune::web
