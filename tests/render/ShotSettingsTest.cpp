// Settings in layers, over time and in passes.

#include "render/ShotSettings.h"

#include "render/OpenEffect.h"
#include "render/ParamText.h"
#include "render/SettingsText.h"
#include "text/Failure.h"

#include <gtest/gtest.h>

namespace kovalune::test {

using namespace render;

namespace {

class Shot : public testing::Test {
protected:
    host::Session& session() { return effect_.session(); }

    ShotSettings settings(const std::vector<std::string>& texts,
                          const std::vector<std::string>& options = {}) {
        std::vector<SettingsLayer> layers;
        for (const std::string& text : texts) {
            layers.push_back(parseSettingsText(session(), text, "file"));
        }
        return {session(), layers, parseSettingOptions(session(), options)};
    }

    std::string refusal(const std::vector<std::string>& texts, const std::vector<std::string>& options = {}) {
        try {
            settings(texts, options);
            return "taken";
        } catch (const text::Failure& failure) {
            return failure.what();
        }
    }

    host::ParamValue value(const ShotSettings& shot, const std::string& label, int64_t frame = 0,
                           std::size_t pass = 0) {
        const int index = session().findParam(label).value();
        for (const auto& [each, value] : shot.valuesAt(pass, frame)) {
            if (each == index) {
                return value;
            }
        }
        ADD_FAILURE() << label;
        return {};
    }

    double number(const ShotSettings& shot, const std::string& label, int64_t frame = 0,
                  std::size_t pass = 0) {
        return std::get<double>(value(shot, label, frame, pass));
    }

    std::string text(const ShotSettings& shot, const std::string& label, int64_t frame = 0,
                     std::size_t pass = 0) {
        const int index = session().findParam(label).value();
        return valueText(session().params()[static_cast<std::size_t>(index)], session().choices(index),
                         value(shot, label, frame, pass));
    }

    OpenEffect effect_{1, Defaults::kFactory};
};

TEST_F(Shot, GoesLinearlyBetweenTheKeysOfAFloatSlider) {
    const ShotSettings shot = settings({"Blur Amount@10=1\nBlur Amount@13=2\nBlur Amount@-5=0.1"});
    EXPECT_TRUE(shot.hasKeys());
    EXPECT_EQ(number(shot, "Blur Amount", 10), 1.0);
    EXPECT_EQ(number(shot, "Blur Amount", 11), 1.0 + 1.0 * (1.0 / 3.0));
    EXPECT_EQ(number(shot, "Blur Amount", 13), 2.0);
    EXPECT_EQ(number(shot, "Blur Amount", 1000), 2.0);
    EXPECT_EQ(number(shot, "Blur Amount", -1000), 0.1);
    EXPECT_EQ(number(shot, "Blur Amount", 0), 0.1 + (1.0 - 0.1) * (5.0 / 15.0));
}

TEST_F(Shot, KeepsAllElseUntilTheNextKey) {
    const ShotSettings shot =
        settings({"Color 1@1=#112233\nColor 1@5=#FFFFFF\nEnable 2@1=off\nEnable 2@3=on\n"
                  "View@2=Normal\nBlur Repeat Num@1=2\nBlur Repeat Num@9=4"});
    EXPECT_EQ(text(shot, "Color 1", 4), "#112233");
    EXPECT_EQ(text(shot, "Color 1", 5), "#FFFFFF");
    EXPECT_EQ(text(shot, "Enable 2", 2), "off");
    EXPECT_EQ(text(shot, "Enable 2", 3), "on");
    EXPECT_EQ(text(shot, "Blur Repeat Num", 8), "2");
    EXPECT_EQ(text(shot, "Blur Repeat Num", 9), "4");
}

TEST_F(Shot, TakesWhatALaterLayerSaysForAllThatEarlierOnesSaid) {
    const ShotSettings shot =
        settings({"Blur Amount@1=1\nBlur Amount@9=9\nColor 1=#010203", "Blur Amount=4\nColor 1.g=9"});
    EXPECT_FALSE(shot.hasKeys());
    EXPECT_EQ(number(shot, "Blur Amount", 9), 4.0);
    EXPECT_EQ(text(shot, "Color 1"), "#010903");
    const ShotSettings keyed = settings({"Blur Amount=4"}, {"Blur Amount@2=1", "Blur Amount@4=3"});
    EXPECT_EQ(number(keyed, "Blur Amount", 3), 2.0);
    EXPECT_EQ(number(settings({"Blur Amount=4"}, {"Blur Amount=5", "Blur Amount=6"}), "Blur Amount"), 6.0);
}

TEST_F(Shot, HasPassesWithWhatCountsInAllOfThem) {
    const ShotSettings shot = settings(
        {"Blur Amount=2\nBlur Repeat Num=1\n[Pass hair]\nBlur Amount=3\n[Pass skin]\nColor 1=#010203\n"
         "[pass hair]\nColor 1=#030201"});
    ASSERT_EQ(shot.passCount(), 2U);
    EXPECT_EQ(shot.passName(0), "hair");
    EXPECT_EQ(number(shot, "Blur Amount", 0, 0), 3.0);
    EXPECT_EQ(number(shot, "Blur Amount", 0, 1), 2.0);
    EXPECT_EQ(text(shot, "Color 1", 0, 0), "#030201");
    EXPECT_EQ(text(shot, "Color 1", 0, 1), "#010203");
    EXPECT_EQ(text(shot, "Blur Repeat Num", 0, 1), "1");
}

TEST_F(Shot, ReachesOnePassOrAll) {
    const std::string file = "[Pass a]\nBlur Amount=1\n[Pass b]\nBlur Amount=1";
    const ShotSettings shot = settings({file}, {"Blur Amount=7", "[b] Blur Amount=8"});
    EXPECT_EQ(number(shot, "Blur Amount", 0, 0), 7.0);
    EXPECT_EQ(number(shot, "Blur Amount", 0, 1), 8.0);
    EXPECT_NE(refusal({file}, {"[c] Blur Amount=8"}).find("there is no pass 'c'; the passes are a, b"),
              std::string::npos);
    ShotSettings first = settings({file});
    first.endWith("a");
    EXPECT_EQ(first.passCount(), 1U);
    EXPECT_THROW(first.endWith("b"), text::Failure);
}

TEST_F(Shot, RefusesWhatSaysTwoThings) {
    EXPECT_NE(refusal({"Blur Amount@1=1\nBlur Amount@1=2"})
                  .find("line 2: 'Blur Amount' was set for frame 1 in line 1 already"),
              std::string::npos);
    EXPECT_NE(refusal({"Blur Amount@1=1\nBlur Amount=2"}).find("it takes either"), std::string::npos);
    EXPECT_NE(refusal({"Blur Amount=2\nBlur Amount@1=1"}).find("it takes either"), std::string::npos);
    EXPECT_NE(refusal({"Color 1@1=#000000\nColor 1.g@1=3"}).find("already"), std::string::npos);
    EXPECT_NE(refusal({}, {"Blur Amount@1=1", "Blur Amount@1=2"}).find("already"), std::string::npos);
    EXPECT_EQ(refusal({"[Pass a]\nBlur Amount=1\n[Pass b]\nBlur Amount=1"}), "taken");
    EXPECT_NE(
        refusal({"[Pass a]\nBlur Amount=1\n[Pass b]\n[Pass a]\nBlur Amount=1"}).find("in line 2 already"),
        std::string::npos);
}

TEST_F(Shot, RefusesWhatIsNoKeyNoPassAndNoVersion) {
    for (const char* text :
         {"Blur Amount@=1", "Blur Amount@x=1", "Blur Amount@1.5=1", "Blur Amount@1=2000000", "@1=1",
          "No Such Label@1=1", "[Pass ]", "[Pass a]]", "[Passage]", "[Version=x]", "[Version=0.9]"}) {
        EXPECT_NE(refusal({text}), "taken") << text;
    }
    EXPECT_NE(refusal({"[Version=2.1]"}).find("version 2.1"), std::string::npos);
    EXPECT_EQ(refusal({"[Version=2.0]\nBlur Amount=1"}), "taken");
}

TEST_F(Shot, IsTheSameFromItsText) {
    const std::string file =
        "Color 1=#123456\nBlur Amount@1=0.1\nBlur Amount@7=0.30000000000000004\n[Pass a]\n"
        "1 : Enable Process=on\n[Pass b]\nColor 2@4=#FFFFFF\nColor 2.r@9=7";
    const ShotSettings shot = settings({file});
    const std::string text = shot.text(session());
    EXPECT_TRUE(text.starts_with("[Version=2.0]\n[Pass a]\n")) << text;
    const ShotSettings again(OpenEffect(1, Defaults::kFactory).session(),
                             {parseSettingsText(session(), text, "text")});
    ASSERT_EQ(again.passCount(), 2U);
    for (std::size_t pass = 0; pass < 2; ++pass) {
        for (int64_t frame = -2; frame < 12; ++frame) {
            setValues(session(), shot.valuesAt(pass, frame));
            const std::string values = paramsFileText(session());
            setValues(session(), again.valuesAt(pass, frame));
            EXPECT_EQ(paramsFileText(session()), values) << "pass " << pass << " frame " << frame;
        }
    }
    EXPECT_TRUE(settings({}).text(session()).starts_with("[Version=1.0]\nView="));
}

TEST_F(Shot, TellsWhatHasKeysInEachPass) {
    const ShotSettings shot =
        settings({"Blur Amount=3\n[Pass A]\nColor 1.r@4=7\n[Pass B]\nBlur Amount@1=2\n"});
    const auto indexOf = [this](const char* label) { return session().findParam(label).value(); };
    EXPECT_EQ(shot.keyed(0), NamedParams{indexOf("Color 1")});
    EXPECT_EQ(shot.keyed(1), NamedParams{indexOf("Blur Amount")});
}

} // namespace
} // namespace kovalune::test
