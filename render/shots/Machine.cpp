#include "render/shots/Machine.h"

#include "render/OpenEffect.h"
#include "text/NumberText.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <sched.h>
#include <thread>

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

int usableProcessors() {
    cpu_set_t set;
    CPU_ZERO(&set);
    if (::sched_getaffinity(0, sizeof set, &set) == 0) {
        return std::max(CPU_COUNT(&set), 1);
    }
    return std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
}

uint64_t freeMemory() {
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
