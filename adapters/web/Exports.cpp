// What a page's worker calls. One engine in a module; requests one after the other.

#include "adapters/web/Engine.h"
#include "adapters/web/Requests.h"
#include "text/Failure.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <emscripten.h>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#ifndef __EMSCRIPTEN_PTHREADS__
// clang-format off
EM_JS(void, tellWorker, (int current, int total), { Module["onProgress"](current, total); })
// clang-format on
#endif

namespace kovalune::web {

namespace {

/// What the page and a running frame tell each other; where memory is shared, at any time.
struct FrameWatch {
    std::atomic<int32_t> isGivenUp = 0; ///< set by the page
    std::atomic<int32_t> current = 0;
    std::atomic<int32_t> total = 0;
};

FrameWatch watch;
std::unique_ptr<Engine> engine;
std::vector<uint8_t> input;
Answer last;

bool onProgress(int current, int total) {
    watch.current = current;
    watch.total = total;
#ifndef __EMSCRIPTEN_PTHREADS__
    tellWorker(current, total);
#endif
    return watch.isGivenUp == 0;
}

} // namespace

extern "C" {

/// 0, or 1 where the effect cannot be set up; its reason is then the answer.
EMSCRIPTEN_KEEPALIVE int kovalune_start(int threads) {
    try {
        engine = std::make_unique<Engine>(std::clamp(threads, 1, render::kMostThreads), onProgress);
        return 0;
    } catch (const std::exception& exception) {
        last = {exception.what(), {}};
        return 1;
    }
}

/// Room for the bytes of the next request, until then; null where there is not enough memory.
EMSCRIPTEN_KEEPALIVE uint8_t* kovalune_input(std::size_t bytes) {
    try {
        input.resize(bytes);
        input.shrink_to_fit();
        return input.data();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// The answer's parts stay where they are until the next request.
EMSCRIPTEN_KEEPALIVE void kovalune_request(const char* json) {
    watch.current = 0;
    watch.total = 0;
    last = {};
    last = answer(*engine, json, input);
    input = {};
}

EMSCRIPTEN_KEEPALIVE const char* kovalune_answer() {
    return last.json.c_str();
}

EMSCRIPTEN_KEEPALIVE const uint8_t* kovalune_bytes() {
    return last.bytes.data();
}

EMSCRIPTEN_KEEPALIVE std::size_t kovalune_byteCount() {
    return last.bytes.size();
}

/// Three words of 32 bits: whether the frame is given up, which the page sets, and how far it is, of how many.
EMSCRIPTEN_KEEPALIVE FrameWatch* kovalune_watch() {
    return &watch;
}

} // extern "C"

} // namespace kovalune::web
