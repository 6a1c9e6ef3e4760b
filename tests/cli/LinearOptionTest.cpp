// --linear from the command line: as if the files had gone through the curve before, but for what the effect leaves.

#include "effect/Kovalune.h"
#include "tests/cli/ErrorCase.h"
#include "tests/pictures/PictureMaker.h"

namespace kovalune::test {

using namespace pictures;

namespace {

class LinearOption : public ErrorCase {
protected:
    CommandOutcome run(const std::vector<std::string>& words) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }

    Picture made(const std::vector<std::string>& words) const {
        const CommandOutcome outcome = run(words);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return pictures::readPicture(folder_ / words.at(3));
    }

    /// The colours of #3264B4 and #1E4682 beside each other, as linear light and as they are.
    void writeBoth() const {
        std::vector<float> light;
        std::vector<float> shown;
        for (int y = 0; y < 24; ++y) {
            for (int x = 0; x < 24; ++x) {
                for (const int value :
                     x * 2 > y ? std::array{0x32, 0x64, 0xb4} : std::array{0x1e, 0x46, 0x82}) {
                    light.push_back(static_cast<float>(linearOfSrgb(value / 255.0)));
                    shown.push_back(static_cast<float>(srgbOfLinear(static_cast<double>(light.back()))));
                }
            }
        }
        writeFloats(folder_ / "light.tif", 24, 24, Channels::kRgb, light);
        writeFloats(folder_ / "shown.tif", 24, 24, Channels::kRgb, shown);
    }
};

TEST_F(LinearOption, GivesWhatTheEffectMakesOfTheShownPicture) {
    writeBoth();
    const Picture light = pictures::readPicture(folder_ / "light.tif");
    const Picture shown = pictures::readPicture(folder_ / "shown.tif");
    const std::vector<std::string> settings = {"--set", "Color 1=#3264B4", "--set", "Enable 2=on",
                                               "--set", "Color 2=#1E4682", "--set", "1 : Enable Process=off"};
    for (const std::string command : {"render", "smooth"}) {
        const auto result = [&](const std::string& from, const std::string& to, bool linear) {
            std::vector<std::string> words = {command, from, "-o", to};
            if (command == "render") {
                words.insert(words.end(), settings.begin(), settings.end());
            }
            if (linear) {
                words.emplace_back("--linear");
            }
            return made(words);
        };
        const Picture fromLight = result("light.tif", "a.tif", true);
        const Picture fromShown = result("shown.tif", "b.tif", false);
        int changed = 0;
        for (std::size_t i = 0; i < 24 * 24 * 3; ++i) {
            const auto value = fromShown.sample<float>(i);
            const bool left = value == shown.sample<float>(i);
            changed += left ? 0 : 1;
            ASSERT_EQ(fromLight.sample<float>(i),
                      left ? light.sample<float>(i)
                           : static_cast<float>(linearOfSrgb(static_cast<double>(value))))
                << command << i;
        }
        EXPECT_GT(changed, 100) << command;
    }
}

TEST_F(LinearOption, TellsTheColoursThatTheEffectGets) {
    writeBoth();
    EXPECT_NE(run({"colors", "light.tif", "--linear"}).out.find("#3264B4"), std::string::npos);
    EXPECT_NE(run({"colors", "light.tif", "--linear"}).out.find("#1E4682"), std::string::npos);
    EXPECT_EQ(run({"colors", "light.tif"}).out.find("#3264B4"), std::string::npos);
    EXPECT_NE(run({"pick", "light.tif", "20,0", "--linear"}).out.find("Colour      #3264B4"),
              std::string::npos);
    EXPECT_EQ(run({"pick", "light.tif", "20,0"}).out.find("#3264B4"), std::string::npos);
}

TEST_F(LinearOption, SheetsAreDrawnAsTheEffectSeesThem) {
    writeBoth();
    const Picture sheet = made({"sheet", "light.tif", "-o", "s.png", "--linear", "--quiet", "--out-depth",
                                "8", "--set", "Enable 1=off", "--set", "1 : Enable Process=off"});
    bool found = false;
    for (std::size_t i = 0; i + 2 < sheet.samples.size(); i += 3) {
        found = found ||
                (sheet.samples[i] == 0x32 && sheet.samples[i + 1] == 0x64 && sheet.samples[i + 2] == 0xb4);
    }
    EXPECT_TRUE(found);
}

} // namespace
} // namespace kovalune::test
