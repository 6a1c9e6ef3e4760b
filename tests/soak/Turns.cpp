#include "tests/soak/Turns.h"

#include "effect/Kovalune.h"
#include "host/Host.h"
#include "host/Session.h"
#include "host/judge/JudgedHost.h"
#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"
#include "render/selfcheck/GoldenScene.h"
#include "render/selfcheck/Random.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/SequenceRun.h"
#include "render/shots/SourceFrame.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cmath>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

namespace kovalune::test {

namespace {

using selfcheck::GoldenScene;
using selfcheck::Random;

constexpr int32_t kMostSide = 160;

struct Rendered {
    PF_Err code = PF_Err_NONE;
    host::Image image;
};

/// One NaN is like any other, of which processors make several.
bool areSame(const host::Image& a, const host::Image& b) {
    if (a.format() != PF_PixelFormat_ARGB128 || a.format() != b.format() || a.width() != b.width() ||
        a.height() != b.height()) {
        return a == b;
    }
    const auto isSame = [](float x, float y) {
        return std::bit_cast<uint32_t>(x) == std::bit_cast<uint32_t>(y) || (std::isnan(x) && std::isnan(y));
    };
    for (A_long y = 0; y < a.height(); ++y) {
        for (A_long x = 0; x < a.width(); ++x) {
            const auto& p = a.at<PF_PixelFloat>(x, y);
            const auto& q = b.at<PF_PixelFloat>(x, y);
            if (!isSame(p.alpha, q.alpha) || !isSame(p.red, q.red) || !isSame(p.green, q.green) ||
                !isSame(p.blue, q.blue)) {
                return false;
            }
        }
    }
    return true;
}

host::Image pictureOf(const GoldenScene& scene) {
    return selfcheck::drawGoldenPicture(scene.picture, scene.format, scene.width, scene.height, scene.seed)
        .image;
}

void apply(host::Session& session, const GoldenScene& scene) {
    const auto set = [&](const std::string& label, const host::ParamValue& value) {
        const std::optional<int> index = session.findParam(label);
        if (!index) {
            throw std::runtime_error("no control '" + label + "'");
        }
        session.setValue(*index, value);
    };
    set("View", A_long{scene.view});
    for (const auto& [label, value] : scene.settings) {
        set(label, value);
    }
}

host::RenderRequest requestOf(const GoldenScene& scene) {
    host::RenderRequest request;
    request.flow = scene.flow;
    request.downsampleX = scene.scaleX;
    request.downsampleY = scene.scaleY;
    return request;
}

Rendered render(host::Session& session, const GoldenScene& scene, host::RenderRequest request) {
    Rendered rendered;
    rendered.code = session.render(pictureOf(scene), rendered.image, request).code;
    return rendered;
}

Rendered render(host::Host& host, host::EffectModule& module, const GoldenScene& scene) {
    host::Session session(host, module);
    apply(session, scene);
    return render(session, scene, requestOf(scene));
}

/// Threads and rows as it happens. The bands of the colour extraction count, so the iterations are the scene's.
template <class Options>
Options optionsFor(const GoldenScene& scene, Random& random) {
    Options options;
    options.threads = random.between(1, 8);
    options.iterations = scene.iterations;
    options.rowPadding = 4 * random.below(9);
    options.dataOffset = 4 * random.below(5);
    return options;
}

/// With the loops that define the pixels, on one thread.
Rendered plainTwin(host::EffectModule& module, const GoldenScene& scene) {
    const std::string set = instructionSet();
    if (!useInstructionSet("plain")) {
        throw std::runtime_error("there are no plain loops");
    }
    host::HostOptions options;
    options.threads = 1;
    options.threaded = false;
    options.iterations = scene.iterations;
    host::Host host(options);
    Rendered rendered = render(host, module, scene);
    if (!useInstructionSet(set)) {
        throw std::runtime_error("the instruction set " + set + " has gone");
    }
    return rendered;
}

std::string differenceOf(const Rendered& rendered, const Rendered& twin, const GoldenScene& scene) {
    const bool same = rendered.code == twin.code && areSame(rendered.image, twin.image);
    return same ? std::string() : "differs from its plain twin: " + scene.text();
}

class Turn {
public:
    Turn(uint64_t seed, host::EffectModule& module, const std::filesystem::path& folder)
        : random_(seed), module_(module), folder_(folder) {}

    TurnResult run() {
        const int kind = random_.below(100);
        if (kind < 40) {
            return alone();
        }
        if (kind < 60) {
            return twoAtOnce();
        }
        if (kind < 72) {
            return cancelled();
        }
        if (kind < 84) {
            return refused();
        }
        return kind < 92 ? smoothed() : sequence();
    }

private:
    GoldenScene nextScene() {
        const uint64_t seed = uint64_t{random_.next()} << 32 | random_.next();
        return selfcheck::randomFrame(seed, random_.chance(5) ? 3 * kMostSide : kMostSide);
    }

    TurnResult alone() {
        const GoldenScene scene = nextScene();
        host::Host host(optionsFor<host::HostOptions>(scene, random_));
        return {2, differenceOf(render(host, module_, scene), plainTwin(module_, scene), scene)};
    }

    /// Of one host, each with a session of its own.
    TurnResult twoAtOnce() {
        const std::array scenes = {nextScene(), nextScene()};
        GoldenScene second = scenes[1];
        second.iterations = scenes[0].iterations;
        host::Host host(optionsFor<host::HostOptions>(scenes[0], random_));
        std::array<Rendered, 2> rendered;
        std::thread other([&] { rendered[1] = render(host, module_, second); });
        rendered[0] = render(host, module_, scenes[0]);
        other.join();
        const std::string fault = differenceOf(rendered[0], plainTwin(module_, scenes[0]), scenes[0]);
        return {4, fault.empty() ? differenceOf(rendered[1], plainTwin(module_, second), second) : fault};
    }

    /// And the same frame again, in the same session.
    TurnResult cancelled() {
        const GoldenScene scene = nextScene();
        host::Host host(optionsFor<host::HostOptions>(scene, random_));
        host::Session session(host, module_);
        apply(session, scene);
        host::RenderRequest request = requestOf(scene);
        const int last = random_.between(1, 12);
        std::atomic<int> calls{0};
        request.onProgress = [&](A_long /*current*/, A_long /*total*/) { return ++calls < last; };
        const Rendered first = render(session, scene, request);
        if (calls >= last && first.code == PF_Err_NONE) {
            return {1, "was cancelled and went on: " + scene.text()};
        }
        return {3, differenceOf(render(session, scene, requestOf(scene)), plainTwin(module_, scene), scene)};
    }

    TurnResult refused() {
        const GoldenScene scene = nextScene();
        auto options = optionsFor<host::judge::JudgeOptions>(scene, random_);
        options.audit = true;
        host::judge::JudgedHost host(options);
        std::string fault;
        {
            host::Session session(host, module_);
            apply(session, scene);
            host.armFaults({.failCall = random_.between(1, 60), .failCode = PF_Err_OUT_OF_MEMORY});
            render(session, scene, requestOf(scene));
            const std::string failed = host.failedCallName();
            const std::string left = leftBehind(host, failed);
            if (!left.empty()) {
                return {1, "left after '" + failed + "': " + left + scene.text()};
            }
            host.resetAudit();
            fault = differenceOf(render(session, scene, requestOf(scene)), plainTwin(module_, scene), scene);
        }
        return {3, fault};
    }

    /// What a failed frame leaves to the host is known: its check-outs, and its block where the suite for that was refused.
    static std::string leftBehind(const host::judge::JudgedHost& host, const std::string& failed) {
        host::judge::AuditReport report = host.audit();
        if (!failed.empty()) {
            report.layerCheckouts = 0;
        }
        if (failed == "AcquireSuite" && report.liveHandles == 1 && report.liveLocks == 1) {
            report.liveHandles = 0;
            report.liveLocks = 0;
        }
        report.paramCheckouts = 0;
        return report.clean() ? std::string() : report.text();
    }

    /// Twice, over memory of different content.
    TurnResult smoothed() {
        const GoldenScene scene = nextScene();
        const host::Image input = pictureOf(scene);
        SmoothOptions options;
        options.threshold = random_.below(256);
        options.strength = random_.between(0, 100);
        options.curve = random_.between(-100, 100);
        std::array<std::vector<std::byte>, 2> results;
        for (std::size_t run = 0; run < results.size(); ++run) {
            results[run].assign(input.rowBytes() * static_cast<std::size_t>(input.height()),
                                run == 0 ? std::byte{0x55} : std::byte{0xaa});
            const auto rowBytes = static_cast<int32_t>(input.rowBytes());
            const PF_Err code = smoothPicture(
                {scene.format, scene.width, scene.height, rowBytes, input.row(0)},
                {scene.format, scene.width, scene.height, rowBytes, results[run].data()}, options);
            if (code != PF_Err_NONE) {
                return {2, "smoothing failed with code " + std::to_string(code)};
            }
        }
        return {2, results[0] == results[1] ? "" : "two smoothings differ: " + scene.text()};
    }

    TurnResult sequence();

    Random random_;
    host::EffectModule& module_;
    const std::filesystem::path& folder_;
};

// ---- Sequences

/// With a host of its own for each job.
class Sequence {
public:
    Sequence(const GoldenScene& scene, host::EffectModule& module, std::size_t jobs) {
        host::HostOptions options;
        options.threads = 2;
        options.iterations = scene.iterations;
        for (std::size_t job = 0; job < jobs; ++job) {
            hosts_.push_back(std::make_unique<host::Host>(options));
            sessions_.push_back(std::make_unique<host::Session>(*hosts_.back(), module));
            apply(*sessions_.back(), scene);
        }
    }

    std::vector<uint8_t> bytesOf(const shots::SourceFrame& source, std::size_t job) {
        host::Image output;
        const PF_Err code = sessions_[job]->render(source.image, output).code;
        if (code != PF_Err_NONE) {
            throw std::runtime_error("the effect failed with code " + std::to_string(code));
        }
        return pictures::encodePicture(
            pictures::FileFormat::kPng,
            pictures::pictureOf(output, source.image, source.picture, pictures::PictureForm()));
    }

private:
    std::vector<std::unique_ptr<host::Host>> hosts_;
    std::vector<std::unique_ptr<host::Session>> sessions_;
};

class Task : public shots::FrameTask {
public:
    Task(Sequence& sequence, std::filesystem::path input, std::filesystem::path output)
        : sequence_(sequence), input_(std::move(input)), output_(std::move(output)) {}

    void read() override { source_ = shots::readFrame(input_.string(), {}); }
    void make(std::size_t job) override { bytes_ = sequence_.bytesOf(source_, job); }
    void write() override { shots::writeAtomically(output_, bytes_); }

private:
    Sequence& sequence_;
    std::filesystem::path input_;
    std::filesystem::path output_;
    shots::SourceFrame source_;
    std::vector<uint8_t> bytes_;
};

pictures::Picture fileOf(const host::Image& image) {
    pictures::Picture picture;
    picture.width = static_cast<uint32_t>(image.width());
    picture.height = static_cast<uint32_t>(image.height());
    picture.channels = pictures::Channels::kRgbAlpha;
    for (A_long y = 0; y < image.height(); ++y) {
        for (A_long x = 0; x < image.width(); ++x) {
            const auto& pixel = image.at<PF_Pixel>(x, y);
            picture.samples.insert(picture.samples.end(), {pixel.red, pixel.green, pixel.blue, pixel.alpha});
        }
    }
    return picture;
}

TurnResult Turn::sequence() {
    constexpr std::size_t kFrames = 5;
    constexpr std::array kFormats = {pictures::FileFormat::kPng, pictures::FileFormat::kTiff,
                                     pictures::FileFormat::kTga};
    GoldenScene scene = nextScene();
    scene.format = PF_PixelFormat_ARGB32;
    const auto damaged = static_cast<std::size_t>(random_.below(kFrames));
    std::vector<std::filesystem::path> inputs;
    std::vector<std::filesystem::path> outputs;
    for (std::size_t frame = 0; frame < kFrames; ++frame) {
        const auto format = kFormats[static_cast<std::size_t>(random_.below(kFormats.size()))];
        scene.seed = random_.next();
        std::vector<uint8_t> bytes = pictures::encodePicture(format, fileOf(pictureOf(scene)));
        if (frame == damaged) {
            bytes.resize(static_cast<std::size_t>(random_.below(static_cast<int>(bytes.size() / 2))));
        }
        inputs.push_back(folder_ / ("in" + std::to_string(frame) + '.' + pictures::formatWord(format)));
        outputs.push_back(folder_ / ("out" + std::to_string(frame) + ".png"));
        shots::writeAtomically(inputs.back(), bytes);
    }
    const auto jobs = static_cast<std::size_t>(random_.between(1, 3));
    Sequence sequence(scene, module_, jobs);
    std::map<std::size_t, shots::FrameOutcome> outcomes;
    shots::RunOptions options;
    options.jobs = jobs;
    options.keepGoing = true;
    shots::runSequence(
        kFrames, options,
        [&](std::size_t frame) { return std::make_unique<Task>(sequence, inputs[frame], outputs[frame]); },
        [&](std::size_t frame, shots::FrameTask& /*task*/, const shots::FrameOutcome& outcome) {
            outcomes[frame] = outcome;
        });
    std::string fault;
    for (std::size_t frame = 0; frame < kFrames; ++frame) {
        const bool done = outcomes[frame].end == shots::FrameEnd::kDone;
        if (done == (frame == damaged) || std::filesystem::exists(outputs[frame]) != done) {
            fault = inputs[frame].filename().string() + " of a sequence: " + outcomes[frame].reason;
        } else if (done && pictures::readPicture(outputs[frame]).samples !=
                               pictures::decodePicture(
                                   pictures::FileFormat::kPng,
                                   sequence.bytesOf(shots::readFrame(inputs[frame].string(), {}), 0), "again")
                                   .samples) {
            fault = inputs[frame].filename().string() + " of a sequence differs from the frame alone";
        }
    }
    for (std::size_t frame = 0; frame < kFrames; ++frame) {
        std::filesystem::remove(inputs[frame]);
        std::filesystem::remove(outputs[frame]);
    }
    return {static_cast<int>(2 * (kFrames - 1)), fault};
}

} // namespace

TurnResult runTurn(uint64_t seed, host::EffectModule& module, const std::filesystem::path& folder) {
    TurnResult result = Turn(seed, module, folder).run();
    if (result.fault.empty() && !std::filesystem::is_empty(folder)) {
        result.fault = "files are left in " + folder.string();
    }
    return result;
}

} // namespace kovalune::test
