// Renders for a long time, and looks at what comes out and at what the process holds. scripts/soak calls it.
//
//   kovalune_soak --minutes N | --frames N [--seed S]   random turns; N and S are whole numbers from 1
//   kovalune_soak --loads N PLUGIN                      loads the plug-in, renders a frame, and unloads it, N times
//
// Ends with 1 where something differs, or where memory, open files or threads grow after the first half.

#include "effect/Kovalune.h"
#include "host/Host.h"
#include "host/Session.h"
#include "hostapi/EntryPoint.h"
#include "render/selfcheck/GoldenHash.h"
#include "render/selfcheck/SelfCheck.h"
#include "tests/soak/ProcessState.h"
#include "tests/soak/Turns.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace kovalune;
using Clock = std::chrono::steady_clock;

/// What a process holds, from the first turn to the last.
class Watch {
public:
    void look() { states_.push_back(test::ProcessState::now()); }

    /// Prints what was held in the second quarter and in the last, once caches are full; false where it grew.
    bool isFlat() const {
        const std::size_t quarter = states_.size() / 4;
        if (quarter == 0) {
            std::puts("too short to see whether anything grows");
            return true;
        }
        const Held before = heldIn(quarter, 2 * quarter);
        const Held after = heldIn(states_.size() - quarter, states_.size());
        std::printf("resident memory, mean of the second quarter and the last: %.1f MB, %.1f MB\n",
                    before.megabytes, after.megabytes);
        std::printf("heap in use: %.3f MB, %.3f MB\n", before.heapMegabytes, after.heapMegabytes);
        std::printf("most open files: %zu, %zu; most threads: %zu, %zu\n", before.descriptors,
                    after.descriptors, before.threads, after.threads);
        // The heap's pages and the threads' stacks are not always the same ones, nor are the watch's own records none.
        constexpr double kNoiseMegabytes = 2.0;
        constexpr double kHeapNoiseMegabytes = 0.05;
        return after.megabytes <= 1.02 * before.megabytes + kNoiseMegabytes &&
               after.heapMegabytes <= before.heapMegabytes + kHeapNoiseMegabytes &&
               after.descriptors <= before.descriptors && after.threads <= before.threads;
    }

private:
    struct Held {
        double megabytes = 0.0;     ///< resident, the mean
        double heapMegabytes = 0.0; ///< likewise
        std::size_t descriptors = 0;
        std::size_t threads = 0;
    };

    Held heldIn(std::size_t first, std::size_t past) const {
        Held held;
        for (std::size_t i = first; i < past; ++i) {
            held.megabytes +=
                static_cast<double>(states_[i].residentBytes) / 1e6 / static_cast<double>(past - first);
            held.heapMegabytes +=
                static_cast<double>(states_[i].heapBytes) / 1e6 / static_cast<double>(past - first);
            held.descriptors = std::max(held.descriptors, states_[i].descriptors);
            held.threads = std::max(held.threads, states_[i].threads);
        }
        return held;
    }

    std::vector<test::ProcessState> states_;
};

struct Limits {
    std::optional<Clock::time_point> end;
    long frames = 0; ///< 0: any number
    uint64_t seed = 1;
};

int soak(const Limits& limits) {
    constexpr long kTurnsALook = 8;
    const std::string name = (std::filesystem::temp_directory_path() / "kovalune-soak-XXXXXX").string();
    std::string folder = name;
    if (mkdtemp(folder.data()) == nullptr) {
        throw std::runtime_error("no folder " + folder);
    }
    host::EffectModule module = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
    Watch watch;
    long frames = 0;
    long faults = 0;
    uint64_t turn = 0;
    const auto start = Clock::now();
    while (limits.end ? Clock::now() < *limits.end : frames < limits.frames) {
        const uint64_t seed = limits.seed * 1000000007 + turn++;
        const test::TurnResult result = test::runTurn(seed, module, folder);
        frames += result.frames;
        if (!result.fault.empty()) {
            ++faults;
            std::printf("turn %llu: %s\n", static_cast<unsigned long long>(turn), result.fault.c_str());
        }
        if (turn % kTurnsALook == 0) {
            watch.look();
        }
    }
    std::filesystem::remove_all(folder);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    std::printf("%ld frames in %llu turns and %.0f seconds, %ld faults\n", frames,
                static_cast<unsigned long long>(turn), seconds, faults);
    return watch.isFlat() && faults == 0 ? 0 : 1;
}

/// With its leave taken and without, in turn.
int loads(long count, const std::string& plugin) {
    const selfcheck::GoldenScene scene = selfcheck::randomFrame(1, 60);
    Watch watch;
    std::string first;
    long faults = 0;
    for (long load = 0; load < count; ++load) {
        {
            host::EffectModule module = host::EffectModule::load(
                plugin, load % 2 == 0 ? host::SetDown::kWithSession : host::SetDown::kNever);
            host::HostOptions options;
            options.threads = 3;
            host::Host host(options);
            const std::string hash = selfcheck::goldenHash(scene, module, host);
            first = first.empty() ? hash : first;
            faults += hash == first ? 0 : 1;
        }
        watch.look();
    }
    std::printf("%ld loads, %ld faults\n", count, faults);
    return watch.isFlat() && faults == 0 ? 0 : 1;
}

std::optional<long> numberOf(std::string_view text) {
    long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number > 0 ? std::optional(number)
                                                                                  : std::nullopt;
}

int usage() {
    std::fputs(
        "usage: kovalune_soak --minutes N | --frames N [--seed S] | --loads N PLUGIN; numbers are above 0\n",
        stderr);
    return 2;
}

int run(const std::vector<std::string_view>& words) {
    const std::optional<long> number = words.size() < 2 ? std::nullopt : numberOf(words[1]);
    if (!number) {
        return usage();
    }
    if (words[0] == "--loads" && words.size() == 3) {
        return loads(*number, std::string(words[2]));
    }
    Limits limits;
    if (words.size() == 4 && words[2] == "--seed" && numberOf(words[3])) {
        limits.seed = static_cast<uint64_t>(*numberOf(words[3]));
    } else if (words.size() != 2) {
        return usage();
    }
    if (words[0] == "--minutes") {
        limits.end = Clock::now() + std::chrono::minutes(*number);
    } else if (words[0] == "--frames") {
        limits.frames = *number;
    } else {
        return usage();
    }
    return soak(limits);
}

} // namespace

int main(int count, char** words) {
    // What each thread's own heap keeps for later is not what is looked for.
    mallopt(M_ARENA_MAX, 1);
    try {
        return run({words + 1, words + count});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kovalune_soak: %s\n", error.what());
        return 1;
    }
}
