#include "render/ParamText.h"
#include "host/HostError.h"
#include "host/ParamStore.h"
#include "hostapi/Constants.h"
#include "render/ParamLabel.h"
#include "text/Failure.h"

#include <gtest/gtest.h>

#include <cstring>

namespace kovalune::test {

using namespace render;
using namespace text;

namespace {

using host::ParamValue;

PF_ParamDef defOf(PF_ParamType type, const char* label) {
    PF_ParamDef def{};
    def.param_type = type;
    std::strncpy(def.name, label, sizeof def.name - 1);
    return def;
}

PF_ParamDef slider() {
    PF_ParamDef def = defOf(PF_Param_SLIDER, "Repeat");
    def.u.sd.valid_min = -3;
    def.u.sd.valid_max = 10;
    return def;
}

PF_ParamDef floatSlider() {
    PF_ParamDef def = defOf(PF_Param_FLOAT_SLIDER, "Amount");
    def.u.fs_d.valid_min = -0.5F;
    def.u.fs_d.valid_max = 100000.0F;
    return def;
}

PF_ParamDef popup(const char* label = "Mode") {
    PF_ParamDef def = defOf(PF_Param_POPUP, label);
    def.u.pd.num_choices = 4;
    return def;
}

const std::vector<std::string> kChoices = {"Plain", "(-", "Fancy", "Process 1", ""};

PF_ParamDef checkbox() {
    return defOf(PF_Param_CHECKBOX, "Keep");
}
PF_ParamDef color() {
    return defOf(PF_Param_COLOR, "Colour");
}

A_long whole(const PF_ParamDef& def, std::string_view text) {
    return std::get<A_long>(parseValue(def, kChoices, text));
}

double number(std::string_view text) {
    return std::get<double>(parseValue(floatSlider(), {}, text));
}

std::vector<int> channels(std::string_view text) {
    const auto pixel = std::get<PF_Pixel>(parseValue(color(), {}, text));
    return {pixel.alpha, pixel.red, pixel.green, pixel.blue};
}

/// The text of the Failure, empty without one.
std::string failure(const PF_ParamDef& def, std::string_view text) {
    try {
        parseValue(def, kChoices, text);
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.kind(), FailureKind::kUsage);
        return failure.what();
    }
    return {};
}

TEST(ParamText, SlidersTakeWholeNumbersOfTheirRange) {
    EXPECT_EQ(whole(slider(), "10"), 10);
    EXPECT_EQ(whole(slider(), " -3 "), -3);
    EXPECT_EQ(failure(slider(), "11"), "'Repeat' cannot be 11: its valid range is -3 to 10");
    EXPECT_EQ(failure(slider(), "-4"), "'Repeat' cannot be -4: its valid range is -3 to 10");
    EXPECT_EQ(failure(slider(), "99999999999"),
              "'Repeat' cannot be 99999999999: its valid range is -3 to 10");
    for (const char* wrong : {"", "1.5", "2x", "x", "0x3", "1 2"}) {
        EXPECT_EQ(failure(slider(), wrong),
                  "'Repeat' takes a whole number, not '" + std::string(wrong) + "'");
    }
}

TEST(ParamText, FloatSlidersTakeNumbersWithADecimalPoint) {
    EXPECT_EQ(number("12"), 12.0);
    EXPECT_EQ(number("3.7000000000000002"), 3.7);
    EXPECT_EQ(number("-.5"), -0.5);
    EXPECT_EQ(number("1e3"), 1000.0);
    for (const char* tiny : {"1e-400", "-1E-400", "0.001e-330", "12345.6e-999", "1e-99999999999999999999",
                             ".5e-400", "100e-9223372036854775807"}) {
        EXPECT_EQ(number(tiny), 0.0) << tiny;
    }
    EXPECT_EQ(number("0." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(number("0." + std::string(400, '0') + "1e402"), 10.0);
    for (const std::string huge : {"0.001e400", "1e99999999999999999999", "1e+400"}) {
        EXPECT_EQ(failure(floatSlider(), huge),
                  "'Amount' cannot be " + huge + ": its valid range is -0.5 to 100000");
    }
    EXPECT_NE(failure(floatSlider(), std::string(400, '9')), "");
    EXPECT_EQ(failure(floatSlider(), "-0.51"), "'Amount' cannot be -0.51: its valid range is -0.5 to 100000");
    EXPECT_EQ(failure(floatSlider(), "1e999"), "'Amount' cannot be 1e999: its valid range is -0.5 to 100000");
    EXPECT_EQ(failure(floatSlider(), "inf"), "'Amount' cannot be inf: its valid range is -0.5 to 100000");
    for (const char* wrong : {"", "1,5", "nan", "much", "1.5%"}) {
        EXPECT_EQ(failure(floatSlider(), wrong), "'Amount' takes a number, not '" + std::string(wrong) + "'");
    }
}

TEST(ParamText, CheckBoxesTakeWordsWithoutCase) {
    for (const char* on : {"on", "On", "TRUE", "1", "yes"}) {
        EXPECT_EQ(whole(checkbox(), on), 1) << on;
    }
    for (const char* off : {"off", "False", "0", "NO"}) {
        EXPECT_EQ(whole(checkbox(), off), 0) << off;
    }
    EXPECT_EQ(failure(checkbox(), "2"), "'Keep' takes on or off, not '2'");
    EXPECT_EQ(failure(checkbox(), ""), "'Keep' takes on or off, not ''");
}

TEST(ParamText, ColoursTakeHexAndThreeNumbers) {
    EXPECT_EQ(channels("#03b4F5"), (std::vector<int>{255, 3, 180, 245}));
    EXPECT_EQ(channels("0,128,255"), (std::vector<int>{255, 0, 128, 255}));
    EXPECT_EQ(channels(" 1 , 2 , 3 "), (std::vector<int>{255, 1, 2, 3}));
    for (const char* large : {"256,0,0", "0,-1,0", "0,0,99999999999"}) {
        EXPECT_EQ(failure(color(), large), "'Colour' cannot be " + std::string(large) +
                                               ": its valid range is 0 to 255 for each channel");
    }
    for (const char* wrong : {"", "#03b4f", "#03b4f55", "#03b4fg", "#+1+1+1", "03b4f5", "1,2", "1,2,3,4",
                              "1,,3", "1,2,", "1.0,2,3", "red"}) {
        EXPECT_EQ(failure(color(), wrong),
                  "'Colour' takes a colour as #RRGGBB or red,green,blue, not '" + std::string(wrong) + "'");
    }
}

TEST(ParamText, PopupsTakeTheirTextOrItsNumber) {
    EXPECT_EQ(whole(popup(), "fancy"), 3);
    EXPECT_EQ(whole(popup(), "3"), 3);
    EXPECT_EQ(whole(popup(), "1"), 1);
    EXPECT_EQ(whole(popup(), "Process 1"), 4);
    for (const char* wrong : {"0", "5", "-1", "", "plai", "1.0"}) {
        EXPECT_EQ(failure(popup(), wrong),
                  "'Mode' has no choice '" + std::string(wrong) + "'; it takes Plain, Fancy, Process 1");
    }
}

TEST(ParamText, SeparatorsOfPopupsCannotBeChosen) {
    for (const char* separator : {"2", "(-"}) {
        EXPECT_NE(failure(popup(), separator).find("only separates"), std::string::npos) << separator;
    }
}

TEST(ParamText, ValuesThatCouldNotBeChosenAreKnown) {
    const PF_ParamDef view = popup("View");
    for (const A_long good : {1, 3, 4, 0, 5, 99}) {
        EXPECT_EQ(choiceRefusal(view, kChoices, good), "") << good;
    }
    EXPECT_NE(choiceRefusal(view, kChoices, A_long{2}), "");
    EXPECT_EQ(choiceRefusal(slider(), {}, A_long{2}), "");
    EXPECT_EQ(choiceRefusal(floatSlider(), {}, 2.0), "");
}

TEST(ParamText, ValuesAreShownAsTheyAreTaken) {
    EXPECT_EQ(valueText(slider(), {}, A_long{-2}), "-2");
    EXPECT_EQ(valueText(floatSlider(), {}, 100000.0), "100000");
    EXPECT_EQ(valueText(floatSlider(), {}, static_cast<double>(0.1F)), "0.1");
    EXPECT_EQ(valueText(checkbox(), {}, A_long{1}), "on");
    EXPECT_EQ(valueText(checkbox(), {}, A_long{0}), "off");
    EXPECT_EQ(valueText(color(), {}, PF_Pixel{255, 3, 180, 245}), "#03B4F5");
    EXPECT_EQ(valueText(popup(), kChoices, A_long{3}), "Fancy");
    EXPECT_EQ(valueText(popup(), kChoices, A_long{7}), "7");
}

std::vector<PF_ParamDef> labelTable() {
    return {defOf(PF_Param_LAYER, ""),           defOf(PF_Param_GROUP_START, "Base"),
            defOf(PF_Param_SLIDER, "Amount"),    defOf(PF_Param_SLIDER, "twin"),
            defOf(PF_Param_SLIDER, "Twin"),      defOf(PF_Param_CHECKBOX, "Same"),
            defOf(PF_Param_CHECKBOX, "Same"),    defOf(PF_Param_GROUP_END, ""),
            defOf(PF_Param_GROUP_START, "Both"), defOf(PF_Param_COLOR, "Both")};
}

std::string labelFailure(std::string_view label) {
    try {
        findSettable(labelTable(), label);
    } catch (const Failure& failure) {
        return failure.what();
    }
    return {};
}

TEST(ParamLabel, IsOfASettableKindWhereTheHostKeepsAValue) {
    for (PF_ParamType type = PF_Param_LAYER; type <= PF_Param_BUTTON; ++type) {
        host::ParamStore table;
        ASSERT_EQ(table.add(-1, defOf(type, "Any")), PF_Err_NONE) << type;
        bool hasValue = true;
        try {
            table.defaultValue(1);
        } catch (const host::HostError&) {
            hasValue = false;
        }
        EXPECT_EQ(isSettable(defOf(type, "Any")), hasValue) << type;
    }
}

TEST(ParamLabel, IsFoundWithoutCase) {
    EXPECT_EQ(findSettable(labelTable(), "aMOUNT"), 2);
}

TEST(ParamLabel, TheSpellingDecidesBetweenLabelsThatDifferByCase) {
    EXPECT_EQ(findSettable(labelTable(), "twin"), 3);
    EXPECT_EQ(findSettable(labelTable(), "Twin"), 4);
    EXPECT_EQ(labelFailure("TWIN"), "'TWIN' is the label of 2 parameters and cannot tell them apart");
    EXPECT_EQ(labelFailure("Same"), "'Same' is the label of 2 parameters and cannot tell them apart");
}

TEST(ParamLabel, OfAGroupIsNoParameterUnlessOneHasItToo) {
    EXPECT_EQ(labelFailure("base"), "'Base' is a group and has no value");
    EXPECT_EQ(findSettable(labelTable(), "Both"), 9);
}

TEST(ParamLabel, ThatIsUnknownNamesTheNearestOnes) {
    EXPECT_EQ(labelFailure("Amont"), "no parameter is called 'Amont'; the nearest: 'Amount'");
    EXPECT_EQ(labelFailure(""), "no parameter is called ''; 'kovalune params' lists them");
}

} // namespace
} // namespace kovalune::test
