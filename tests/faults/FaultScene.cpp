#include "tests/faults/FaultScene.h"

#include "hostapi/EntryPoint.h"

#include <algorithm>
#include <vector>

namespace kovalune::test {
namespace {

constexpr A_long kNormal = 1;
constexpr A_long kExtract = 3;
constexpr A_long kBase = 4;
constexpr A_long kProcess3 = 7;
constexpr PF_Pixel kFirst = {255, 200, 40, 60};
constexpr PF_Pixel kSecond = {255, 30, 24, 40};

template <class Pixel, class Channel>
void paint(host::Image& image, Channel scale(A_u_char)) {
    for (A_long y = 0; y < image.height(); ++y) {
        for (A_long x = 0; x < image.width(); ++x) {
            const PF_Pixel& c = x < 5 ? kFirst : kSecond;
            const bool hole = x == 3 && y == 4;
            image.at<Pixel>(x, y) = {scale(hole ? 0 : 255), scale(c.red), scale(c.green), scale(c.blue)};
        }
    }
}

} // namespace

std::ostream& operator<<(std::ostream& out, const FaultScene& scene) {
    return out << scene.name;
}

const std::vector<FaultScene>& faultScenes() {
    static const std::vector<FaultScene> scenes = [] {
        struct Named {
            const char* name;
            PF_PixelFormat format;
        };
        std::vector<FaultScene> all;
        for (const Named& depth : {Named{"Argb", PF_PixelFormat_ARGB32}, Named{"Ae16", PF_PixelFormat_ARGB64},
                                   Named{"Ae32", PF_PixelFormat_ARGB128}}) {
            const auto add = [&](const char* what, host::RenderFlow flow, double amount, A_long view) {
                all.push_back({depth.name + std::string(what), depth.format, flow, amount, view});
            };
            const auto addProcesses = [&](const char* what, host::RenderFlow flow, A_long view,
                                          const std::vector<int>& processes, int keeping) {
                all.push_back(
                    {depth.name + std::string(what), depth.format, flow, 0, view, 1, processes, keeping});
            };
            add("SmartSmoothed", host::RenderFlow::kSmart, 10, kNormal);
            add("SmartExtract", host::RenderFlow::kSmart, 20, kExtract);
            add("SmartCopied", host::RenderFlow::kSmart, 0, kBase);
            add("LegacyBase", host::RenderFlow::kLegacy, 20, kBase);
            addProcesses("SmartProcesses", host::RenderFlow::kSmart, kExtract, {1, 2, 3, 4}, 2);
            addProcesses("LegacyProcess3", host::RenderFlow::kLegacy, kProcess3, {1, 3}, 3);
        }
        return all;
    }();
    return scenes;
}

host::EffectModule testedEffect() {
#ifdef _WIN32
    return host::EffectModule::load(KOVALUNE_PLUGIN, host::SetDown::kNever);
#else
    return host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
#endif
}

host::judge::JudgeOptions strictOptions() {
    host::judge::JudgeOptions options;
    options.audit = true;
    options.poisonNewWorlds = true;
    options.recordCalls = true;
    options.threads = 1;
    options.iterations = 2;
    options.rowPadding = 12;
    return options;
}

host::Image scenePicture(PF_PixelFormat format) {
    host::Image image(format, 12, 9);
    switch (format) {
    case PF_PixelFormat_ARGB32:
        paint<PF_Pixel, A_u_char>(image, [](A_u_char c) { return c; });
        break;
    case PF_PixelFormat_ARGB64:
        paint<PF_Pixel16, A_u_short>(
            image, [](A_u_char c) { return static_cast<A_u_short>((c * 32768 + 128) / 255); });
        break;
    default:
        paint<PF_PixelFloat, float>(image, [](A_u_char c) { return static_cast<float>(c) / 255.0F; });
        break;
    }
    return image;
}

void applyScene(host::Session& session, const FaultScene& scene) {
    const auto set = [&session](const char* label, host::ParamValue value) {
        session.setValue(session.findParam(label).value(), value);
    };
    set("View", scene.view);
    set("Blur Amount", scene.blurAmount);
    set("Blur Repeat Num", scene.repeat);
    set("Enable 2", A_long{1});
    set("Color 1", kFirst);
    set("Color 2", kSecond);
    for (int process = 1; process <= 4; ++process) {
        const auto setOf = [&](const char* label, host::ParamValue value) {
            set((std::to_string(process) + " : " + label).c_str(), value);
        };
        const bool on = std::count(scene.processes.begin(), scene.processes.end(), process) != 0;
        setOf("Enable Process", A_long{on ? 1 : 0});
        setOf("Color", process % 2 != 0 ? kFirst : kSecond);
        setOf("Blur Repeat Num", A_long{1});
        setOf("Boundary Blur", smoothsBoundaries(process) ? 6.0 : 40.0);
        if (process > 1) {
            setOf("Keep Process", A_long{process == scene.keeping ? 1 : 0});
        }
    }
}

host::RenderRequest requestOf(const FaultScene& scene) {
    host::RenderRequest request;
    request.flow = scene.flow;
    return request;
}

} // namespace kovalune::test
