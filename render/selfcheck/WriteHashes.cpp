// golden_hashes: writes the golden hashes, a line a scene, to standard output. With the path of a plug-in's file it renders
// the frames through that, else through the effect that is linked in, after --cpu with that instruction set.

#include "effect/Kovalune.h"
#include "hostapi/EntryPoint.h"
#include "render/selfcheck/GoldenHash.h"

#include <cstdio>
#include <exception>
#include <string_view>

namespace {

using namespace kovalune;

constexpr char kHead[] = "# What frames, smoothed pictures and maps of edge flags look like, as a hash of "
                         "128 bits each (FNV-1a over format, size\n"
                         "# and pixels, low byte first; every NaN as one). A line that changes is a pixel "
                         "that changes. Written by golden_hashes,\n"
                         "# compared by golden_tests.\n"
                         "#\n"
                         "# hash | picture-seed, size, depth, flow, view; what is not as usual | settings\n";

void writeHashes(host::EffectModule& module) {
    host::HostOptions options;
    options.threads = 1;
    std::fputs(kHead, stdout);
    host::Host host(options);
    for (const selfcheck::GoldenScene& scene : selfcheck::goldenScenes()) {
        std::printf("%s %s\n", selfcheck::goldenHash(scene, module, host).c_str(), scene.text().c_str());
    }
}

} // namespace

int main(int count, char** words) {
    try {
        const bool choosesSet = count > 2 && std::string_view(words[1]) == "--cpu";
        if (choosesSet && !useInstructionSet(words[2])) {
            std::fprintf(stderr, "golden_hashes: this machine has no instruction set '%s'\n", words[2]);
            return 2;
        }
        host::EffectModule module = count > 1 && !choosesSet
                                        ? host::EffectModule::load(words[1], host::SetDown::kNever)
                                        : host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
        writeHashes(module);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "golden_hashes: %s\n", error.what());
        return 1;
    }
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? 0 : 1;
}
