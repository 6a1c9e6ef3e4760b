// Every golden frame against the file of hashes: however the work is divided and whatever stood in
// the host's memory, linked in and from the plug-in's file.

#include "host/judge/JudgedHost.h"
#include "hostapi/EntryPoint.h"
#include "render/selfcheck/GoldenHash.h"
#include "render/selfcheck/PixelHash.h"
#include "render/selfcheck/SelfCheck.h"
#include "tests/support/Effort.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace kovalune::test {

using namespace selfcheck;

namespace {

/// Without comments, in the file's order.
std::vector<std::string> linesOfTheFile() {
    std::ifstream file(KOVALUNE_GOLDEN_HASHES);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (!line.empty() && line.front() != '#') {
            lines.push_back(line);
        }
    }
    return lines;
}

/// Names the first scenes that differ.
void expectTheFilesHashes(host::EffectModule& module,
                          const std::function<host::judge::JudgeOptions(std::size_t scene)>& optionsOf) {
    const std::vector<GoldenScene> scenes = goldenScenes();
    const std::vector<std::string> lines = linesOfTheFile();
    ASSERT_EQ(lines.size(), scenes.size());
    int differing = 0;
    for (std::size_t i = 0; i < scenes.size() && differing < 5; ++i) {
        host::judge::JudgedHost host(optionsOf(i));
        const std::string line = goldenHash(scenes[i], module, host) + ' ' + scenes[i].text();
        EXPECT_EQ(line, lines[i]) << "line " << i + 1 << " without comments";
        differing += line == lines[i] ? 0 : 1;
    }
}

TEST(GoldenFile, HasALineOfItsOwnForEachScene) {
    const std::vector<GoldenScene> scenes = goldenScenes();
    std::set<std::string> texts;
    std::set<std::string> hashes;
    for (const std::string& line : linesOfTheFile()) {
        texts.insert(line.substr(line.find(' ')));
        hashes.insert(line.substr(0, line.find(' ')));
        EXPECT_EQ(line.find(' '), 32U) << line;
    }
    EXPECT_GT(scenes.size(), 300U);
    EXPECT_EQ(texts.size(), scenes.size());
    EXPECT_GT(hashes.size(), scenes.size() * 3 / 4) << "scenes are to show something";
}

/// Of its own, from 1 to 64, for each scene.
constexpr int kEveryNumber = 0;

/// What stands in memory that the host hands out, another byte for each run: no pixel may come from it. As floats they are 0,
/// NaN, small and large.
uint8_t contentFor(int iterations) {
    return iterations == 1 ? 0x00 : iterations == 2 ? 0xff : iterations == kEveryNumber ? 0x11 : 0x7e;
}

class GoldenFrames : public testing::TestWithParam<int> {};

TEST_P(GoldenFrames, AreThoseOfTheFileForThisManyIterations) {
    host::EffectModule module = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
    expectTheFilesHashes(module, [](std::size_t scene) {
        const int iterations = GetParam() == kEveryNumber ? 1 + static_cast<int>(scene % 64) : GetParam();
        host::judge::JudgeOptions options;
        options.iterations = iterations;
        options.threads = GetParam() == 1 ? 1 : 2;
        options.shuffleIterations = GetParam() != 1;
        options.shuffleSeed = scene + 1;
        options.rowPadding = GetParam() % 3 * 12;
        options.poisonNewWorlds = true;
        options.poison = contentFor(GetParam());
        return options;
    });
}

/// The sanitizers look at what is done, which is the same for any number above 1.
#ifdef KOVALUNE_TEST_LONG
INSTANTIATE_TEST_SUITE_P(Iterations, GoldenFrames, testing::Range(0, 65), testing::PrintToStringParamName());
#else
INSTANTIATE_TEST_SUITE_P(Iterations, GoldenFrames,
                         kSanitized ? testing::ValuesIn({kEveryNumber})
                                    : testing::ValuesIn({1, 2, kEveryNumber, 64}),
                         testing::PrintToStringParamName());
#endif

TEST(GoldenFramesOfThePlugIn, AreThoseOfTheFile) {
    host::EffectModule module = host::EffectModule::load(KOVALUNE_PLUGIN, host::SetDown::kNever);
    expectTheFilesHashes(module, [](std::size_t /*scene*/) { return host::judge::JudgeOptions(); });
}

/// An effect that fails where the linked one renders.
PF_Err failingToRender(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* params[],
                       PF_LayerDef* output, void* extra) {
    constexpr PF_Err kOwnCode = 517;
    return command == PF_Cmd_SMART_RENDER ? kOwnCode
                                          : EntryPointFunc(command, in, out, params, output, extra);
}

TEST(SelfCheck, NamesTheFirstSceneThatIsAnother) {
    host::Host host;
    host::EffectModule sound = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
    const CheckOutcome fine = checkScenes(sound, host, {.every = 10});
    EXPECT_EQ(fine.scenes, (goldenScenes().size() + 9) / 10);
    EXPECT_FALSE(fine.first) << fine.first->scene;
    EXPECT_LT(checkScenes(sound, host, {.every = 10, .framesAlone = true}).scenes, fine.scenes);
    host::EffectModule unsound = host::EffectModule::linked(failingToRender, host::SetDown::kNever);
    const CheckOutcome outcome = checkScenes(unsound, host, {});
    EXPECT_EQ(outcome.scenes, 1U);
    ASSERT_TRUE(outcome.first);
    EXPECT_EQ(outcome.first->scene, goldenScenes().front().text());
    EXPECT_EQ(outcome.first->expected, linesOfTheFile().front().substr(0, 32));
    EXPECT_EQ(outcome.first->found, "code 517");
    // Smoothing alone is the linked effect's, whatever the other one does.
    const CheckOutcome all = checkScenes(unsound, host, {.every = 10, .toTheEnd = true});
    EXPECT_EQ(all.scenes, fine.scenes);
    EXPECT_GT(all.differences, 1U);
    EXPECT_LT(all.differences, all.scenes);
    EXPECT_EQ(all.first->scene, outcome.first->scene);
}

TEST(PixelHash, IsThePublishedOne) {
    EXPECT_EQ(PixelHash().text(), "6c62272e07bb014262b821756295c58d");
    PixelHash a;
    a.add('a');
    EXPECT_EQ(a.text(), "d228cb696f1a8caf78912b704e4a8964");
    PixelHash foobar;
    for (const char letter : std::string("foobar")) {
        foobar.add(static_cast<uint8_t>(letter));
    }
    EXPECT_EQ(foobar.text(), "343e1662793c64bf6f0d3597ba446f18");
}

TEST(PixelHash, TakesEveryNaNForOne) {
    const auto hashOf = [](float value) {
        PixelHash hash;
        hash.addFloat(value);
        return hash.text();
    };
    EXPECT_EQ(hashOf(std::numeric_limits<float>::quiet_NaN()), hashOf(-std::nanf("7")));
    EXPECT_NE(hashOf(0.0F), hashOf(-0.0F));
}

} // namespace
} // namespace kovalune::test
