#include "render/shots/Machine.h"

#include "render/OpenEffect.h"
#include "render/shots/ControlGroups.h"
#include "text/NumberText.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <sched.h>
#include <thread>
#include <vector>

namespace kovalune::shots {

namespace {

/// By measurement, the picture's own samples included.
uint64_t bytesAPixel(PF_PixelFormat format) {
    return format == PF_PixelFormat_ARGB128 ? 185 : 115;
}

uint64_t bytesOfPicture(uint64_t pixels, PF_PixelFormat format) {
    return pixels * static_cast<uint64_t>(format == PF_PixelFormat_ARGB128  ? 16
                                          : format == PF_PixelFormat_ARGB64 ? 8
                                                                            : 4);
}

std::string count(int number, const std::string& what) {
    return std::to_string(number) + ' ' + what + (number == 1 ? "" : "s");
}

std::string megabytes(uint64_t bytes) {
    return text::fixedText(static_cast<double>(bytes) / 1e6, 0) + " MB";
}

} // namespace

namespace {

/// Those that the process was given, by a farm's engine or by hand; 0 where the system does not tell.
int ownProcessors() {
    constexpr int kMostKnown = 1 << 16;
    // Machines may have more than a plain set has room for.
    for (int room = CPU_SETSIZE; room <= kMostKnown; room *= 2) {
        const std::size_t bytes = CPU_ALLOC_SIZE(static_cast<std::size_t>(room));
        std::vector<cpu_set_t> set((bytes + sizeof(cpu_set_t) - 1) / sizeof(cpu_set_t));
        if (::sched_getaffinity(0, bytes, set.data()) == 0) {
            return CPU_COUNT_S(bytes, set.data());
        }
        if (errno != EINVAL) {
            break;
        }
    }
    return 0;
}

/// 0 where the system does not tell.
uint64_t machinesFreeMemory() {
    constexpr uint64_t kBytesInUnit = 1024;
    std::ifstream file("/proc/meminfo");
    std::string word;
    while (file >> word) {
        uint64_t amount = 0;
        if (word == "MemAvailable:" && file >> amount) {
            return amount * kBytesInUnit;
        }
    }
    return 0;
}

} // namespace

int usableProcessors() {
    const int own = ownProcessors();
    const int given = own > 0 ? own : static_cast<int>(std::thread::hardware_concurrency());
    return std::max(std::min(given, groupLimits().processors.value_or(given)), 1);
}

uint64_t freeMemory() {
    const uint64_t machines = machinesFreeMemory();
    const std::optional<uint64_t> groups = groupLimits().freeMemory;
    if (!groups) {
        return machines;
    }
    // What is known of a group is known of the machine: nothing left is not "not told".
    return std::max<uint64_t>(machines == 0 ? *groups : std::min(machines, *groups), 1);
}

/// A frame is read and another one written while one is made, each of them as two or three pictures.
uint64_t bytesOfFrame(uint64_t pixels, PF_PixelFormat format) {
    constexpr uint64_t kPicturesWaiting = 5;
    return pixels * bytesAPixel(format) + kPicturesWaiting * bytesOfPicture(pixels, format);
}

Division divided(const DivisionRequest& request, int processors, uint64_t memory) {
    const int most = std::clamp(processors, 1, render::kMostThreads);
    Division division;
    if (request.jobs) {
        division.jobs = *request.jobs;
    } else {
        const uint64_t bytes = std::max<uint64_t>(bytesOfFrame(request.pixels, request.format), 1);
        const uint64_t bearable = memory == 0 ? 1 : std::max<uint64_t>(memory / 2 / bytes, 1);
        const auto wanted =
            static_cast<uint64_t>(request.threads ? std::max(most / *request.threads, 1) : most);
        division.jobs = static_cast<int>(std::min({wanted, bearable, std::max<uint64_t>(request.frames, 1)}));
    }
    division.threads = request.threads ? *request.threads : std::max(most / division.jobs, 1);
    return division;
}

std::string divisionText(const Division& division, const DivisionRequest& request, int processors,
                         uint64_t memory) {
    return count(processors, "processor") + ", " + megabytes(memory) + " free, " +
           megabytes(bytesOfFrame(request.pixels, request.format)) +
           " a frame: " + count(division.jobs, "frame") + " at once, " + count(division.threads, "thread") +
           " each";
}

} // namespace kovalune::shots
