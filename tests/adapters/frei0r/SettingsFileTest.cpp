// The first parameter: a settings file of the command.

#include "tests/adapters/frei0r/TestHost.h"
#include "tests/support/TestFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace kovalune::test {
namespace {

class Frei0rSettingsFile : public testing::Test {
protected:
    std::string write(const std::string& text) const {
        const std::string path = folder_ / "clip.params";
        writeBytes(path, {text.begin(), text.end()});
        return path;
    }

    /// What is told when the filter gets a file with this text.
    std::string toldOf(const std::string& text) {
        const std::string path = write(text);
        testing::internal::CaptureStderr();
        filter_.set("Settings File", path);
        return testing::internal::GetCapturedStderr();
    }

    const TestFolder folder_;
    const Ready file_;
    LoadedFilter filter_{file_, 48, 40};
    LoadedFilter other_{file_, 48, 40};
    const RgbaPicture picture_ = blocks(48, 40);
};

TEST_F(Frei0rSettingsFile, WinsOverTheSingleParameters) {
    filter_.set("Settings File",
                write("; a remark\n[Version=1.0]\nBlur Amount=12.5\nColor 1=#3264B4\nEnable 2=on\n"
                      "Color 2.r=30\nColor 2.g=70\n"));
    filter_.set("Blur Amount", 0.5);
    filter_.set("Color 2", frei0r::Color{1.0F, 1.0F, 130 / 255.0F}); // of which the file leaves the blue
    filter_.set("View", "Base");                                     // which the file does not name
    other_.set("Blur Amount", 0.0125);
    other_.set("Color 1", frei0r::Color{50 / 255.0F, 100 / 255.0F, 180 / 255.0F});
    other_.set("Enable 2", 1.0);
    other_.set("Color 2", frei0r::Color{30 / 255.0F, 70 / 255.0F, 130 / 255.0F});
    other_.set("View", "Base");
    const RgbaPicture expected = other_.update(picture_);
    EXPECT_TRUE(filter_.update(picture_) == expected);
    EXPECT_FALSE(expected == picture_);
    EXPECT_EQ(filter_.number("Blur Amount"), 0.5); // what a host saves is its own
}

TEST_F(Frei0rSettingsFile, IsReadAgainWhenItsPathIsSet) {
    const std::string path = write("View=Base\n");
    filter_.set("Settings File", path);
    const RgbaPicture base = filter_.update(picture_);
    write("View=Extract\nColor 1=#3264B4\n");
    EXPECT_TRUE(filter_.update(picture_) == base);
    filter_.set("Settings File", path);
    EXPECT_FALSE(filter_.update(picture_) == base);
    filter_.set("Settings File", "");
    EXPECT_TRUE(filter_.update(picture_) == other_.update(picture_));
    EXPECT_EQ(filter_.text("Settings File"), "");
}

/// As the command has them: what is no multiple of 1/1000 too.
TEST_F(Frei0rSettingsFile, HasValuesToTheLastBit) {
    filter_.set("Settings File", write("Color 1=#3264B4\nBlur Amount=3.00049\n"));
    other_.set("Settings File", write("Color 1=#3264B4\nBlur Amount=3\n"));
    EXPECT_EQ(filter_.update(picture_).pixels.size(), other_.update(picture_).pixels.size());
    EXPECT_EQ(toldOf("Blur Amount=3.00049\n"), "");
}

TEST_F(Frei0rSettingsFile, WithKeysPassesOrAreasIsRefusedWithAWord) {
    const std::string name = "kovalune: the settings file '" + (folder_ / "clip.params").string() + "' has ";
    EXPECT_EQ(toldOf("Blur Amount@1=3\n").rfind(name + "keys,", 0), 0U);
    EXPECT_EQ(toldOf("[Pass shadow]\nBlur Amount=3\n").rfind(name + "passes,", 0), 0U);
    EXPECT_EQ(toldOf("Region=0,0,4,4\n").rfind(name + "a mask or a region,", 0), 0U);
    EXPECT_EQ(toldOf("Blur Amount=3\n"), "");
}

TEST_F(Frei0rSettingsFile, ThatCannotBeTakenLeavesThePicture) {
    filter_.set("View", "Base");
    for (const std::string& text : {std::string("Blur Amount=2000\n"), std::string("No Such=1\n"),
                                    std::string("Blur Amount@1=3\n"), std::string((1U << 20) + 1, ';')}) {
        const std::string told = toldOf(text);
        EXPECT_EQ(told.rfind("kovalune: ", 0), 0U) << told;
        EXPECT_NE(told.find("clip.params"), std::string::npos) << told;
        EXPECT_EQ(told.find('\n'), told.size() - 1) << told;
        testing::internal::CaptureStderr();
        EXPECT_TRUE(filter_.update(picture_) == picture_);
        EXPECT_TRUE(filter_.update(picture_) == picture_);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "it was told before";
    }
    EXPECT_EQ(toldOf("View=Normal\n"), "");
    EXPECT_TRUE(filter_.update(picture_) == other_.update(picture_));
}

TEST_F(Frei0rSettingsFile, ThatIsNotThereOrNoFileIsTold) {
    for (const std::string& path : {(folder_ / "none.params").string(), folder_.path().string()}) {
        testing::internal::CaptureStderr();
        filter_.set("Settings File", path);
        const std::string told = testing::internal::GetCapturedStderr();
        EXPECT_EQ(told.rfind("kovalune: cannot read the settings file '" + path + "': ", 0), 0U) << told;
        EXPECT_TRUE(filter_.update(picture_) == picture_);
    }
}

/// A host that sets all parameters for each frame would tell a fault as often.
TEST_F(Frei0rSettingsFile, ThatStaysWrongIsToldOnce) {
    EXPECT_NE(toldOf("Blur Amount=2000\n"), "");
    EXPECT_EQ(toldOf("Blur Amount=2000\n"), "");
    EXPECT_NE(toldOf("Blur Amount=3000\n"), "");
}

TEST_F(Frei0rSettingsFile, OfTheExamplesIsTaken) {
    testing::internal::CaptureStderr();
    filter_.set("Settings File", std::string(KOVALUNE_EXAMPLES) + "/cel1.params");
    EXPECT_FALSE(filter_.update(picture_) == picture_);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace kovalune::test
