// Whole frames through the plug-ins for other hosts, beside the same frames in the reference host.

#include "bench/BenchScene.h"
#include "bench/FrameSettings.h"

#include "adapters/frei0r/Interface.h"
#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Session.h"
#include "hostapi/EntryPoint.h"
#include "render/LinkedEffect.h"
#include "render/SettingsText.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace kovalune::bench {
namespace {

/// What a session is set to, in a file for as long as this lives.
class SettingsFile {
public:
    explicit SettingsFile(const host::Session& session) {
        const int file = ::mkstemp(name_);
        const std::string text = render::paramsFileText(session);
        if (file < 0 || ::write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
            throw std::runtime_error("no settings file could be written");
        }
        ::close(file);
    }
    ~SettingsFile() { ::unlink(name_); }
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;

    char* name() { return name_; }

private:
    char name_[32] = "/tmp/kovalune-bench-XXXXXX";
};

/// The finished file with one instance.
class Frei0rFilter {
public:
    Frei0rFilter(SettingsFile& settings, unsigned width, unsigned height)
        : library_(::dlopen(KOVALUNE_FREI0R_FILE, RTLD_NOW | RTLD_LOCAL)) {
        if (library_ == nullptr || function<frei0r::Init>("f0r_init")() < 0) {
            throw std::runtime_error("the frei0r plug-in does not load");
        }
        instance_ = function<frei0r::Construct>("f0r_construct")(width, height);
        char* name = settings.name();
        function<frei0r::SetParamValue>("f0r_set_param_value")(instance_, static_cast<void*>(&name), 0);
        update_ = function<frei0r::Update>("f0r_update");
    }
    ~Frei0rFilter() {
        function<frei0r::Destruct>("f0r_destruct")(instance_);
        ::dlclose(library_);
    }
    Frei0rFilter(const Frei0rFilter&) = delete;
    Frei0rFilter& operator=(const Frei0rFilter&) = delete;

    void update(const std::vector<uint32_t>& input, std::vector<uint32_t>& output) const {
        update_(instance_, 0.0, input.data(), output.data());
    }

private:
    template <class Function>
    Function* function(const char* name) const {
        return reinterpret_cast<Function*>(::dlsym(library_, name));
    }

    void* library_;
    frei0r::Instance instance_ = nullptr;
    frei0r::Update* update_ = nullptr;
};

std::vector<uint32_t> rgbaOf(const host::Image& image) {
    std::vector<uint32_t> words;
    for (A_long y = 0; y < image.height(); ++y) {
        for (A_long x = 0; x < image.width(); ++x) {
            const auto& p = image.at<PF_Pixel>(x, y);
            const uint8_t bytes[] = {p.red, p.green, p.blue, p.alpha};
            uint32_t word = 0;
            std::memcpy(&word, bytes, sizeof word);
            words.push_back(word);
        }
    }
    return words;
}

template <class Work>
double secondsOf(const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Turn by turn, so that whatever else the machine does counts for both. The counters: the shortest frame of the reference host in
/// milliseconds, of the plug-in, and the second over the first.
template <FrameSetting setting>
void frei0rFrame(benchmark::State& state) {
    host::Host host(render::toolOptions());
    host::EffectModule module = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
    host::Session session(host, module);
    setting(session);
    SettingsFile settings(session);
    const Frei0rFilter filter(settings, static_cast<unsigned>(kWidth), static_cast<unsigned>(kHeight));
    const host::Image& input = picture(state.range(0), PF_PixelFormat_ARGB32);
    host::Image output = input;
    const std::vector<uint32_t> rgba = rgbaOf(input);
    std::vector<uint32_t> rgbaOutput(rgba.size());
    const auto byHost = [&] {
        if (!session.render(input.view(), output.view()).ok()) {
            throw std::runtime_error("a frame failed");
        }
    };
    const auto byPlugIn = [&] { filter.update(rgba, rgbaOutput); };
    byHost(); // the first ones find all memory new
    byPlugIn();
    if (rgbaOutput != rgbaOf(output)) {
        throw std::runtime_error("the plug-in makes other pixels");
    }
    double hostSeconds = 1e9;
    double plugInSeconds = 1e9;
    for (auto step : state) {
        hostSeconds = std::min(hostSeconds, secondsOf(byHost));
        const double seconds = secondsOf(byPlugIn);
        plugInSeconds = std::min(plugInSeconds, seconds);
        state.SetIterationTime(seconds);
    }
    report(state, state.range(0));
    state.counters["host_ms"] = 1e3 * hostSeconds;
    state.counters["plugin_ms"] = 1e3 * plugInSeconds;
    state.counters["ratio"] = plugInSeconds / hostSeconds;
}

void onBoth(benchmark::internal::Benchmark* bench) {
    bench->Arg(kDrawing)->Arg(kNoise)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(frei0rFrame<useDefaults>)->Name("frei0r8 defaults")->Apply(onBoth);
BENCHMARK(frei0rFrame<useBase<40>>)->Name("frei0r8 base 40")->Apply(onBoth);
BENCHMARK(frei0rFrame<useAllStages>)->Name("frei0r8 all stages")->Apply(onBoth);

} // namespace
} // namespace kovalune::bench
