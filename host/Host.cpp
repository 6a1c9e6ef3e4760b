#include "host/Host.h"

#include "host/HostState.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace kovalune::host {

namespace {

constexpr int kMostThreads = 64;
constexpr int kLargestLayoutNumber = 1 << 16;

void require(bool condition, const char* text) {
    if (!condition) {
        throw HostError(text);
    }
}

} // namespace

bool isLayoutNumber(int bytes) {
    return bytes >= 0 && bytes <= kLargestLayoutNumber && bytes % 4 == 0;
}

int threadCountOf(const HostOptions& options) {
    static const int machines =
        std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMostThreads);
    return options.threads > 0 ? std::min(options.threads, kMostThreads) : machines;
}

void HostState::checkOptions() const {
    require(options.threads >= 0 && options.threads <= kMostThreads, "threads must be 0 to 64");
    require(options.iterations >= 0, "iterations must not be negative");
    require(isLayoutNumber(options.rowPadding), "rowPadding must be a multiple of 4 from 0 to 65536");
    require(isLayoutNumber(options.dataOffset), "dataOffset must be a multiple of 4 from 0 to 65536");
    require(options.timeScale != 0, "timeScale must not be 0");
    manners.check();
}

int HostState::iterationCount() const {
    return options.iterations > 0 ? options.iterations : threadCountOf(options);
}

/// What stands where there is no layer.
struct Host::Own {
    explicit Own(HostOptions given) : options(std::move(given)) {}

    HostOptions options;
    CallWatch watch;
    MemoryWatch memory;
    HostManners manners;
};

Host::Host(HostOptions options)
    : own_(std::make_unique<Own>(std::move(options))),
      state_(
          std::make_unique<HostState>(own_->options, HostLayer{own_->watch, own_->memory, own_->manners})) {
    state_->checkOptions();
}

Host::Host(HostOptions& options, const HostLayer& layer)
    : state_(std::make_unique<HostState>(options, layer)) {
    state_->checkOptions();
}

Host::~Host() = default;

HostOptions& Host::options() {
    return state_->options;
}

const HostOptions& Host::options() const {
    return state_->options;
}

const RowWork& Host::rowWork() const {
    return state_->rowWork;
}

} // namespace kovalune::host
