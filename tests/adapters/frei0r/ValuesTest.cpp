// Values on their way into the plug-in: ranges, roundings, choices, colours and what is none of them.

#include "tests/adapters/frei0r/TestHost.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace kovalune::test {
namespace {

class Frei0rValues : public testing::Test {
protected:
    const Ready file_;
    LoadedFilter filter_{file_, 48, 32};
    const RgbaPicture picture_ = blocks(48, 32);
};

double taken(LoadedFilter& filter, const char* name, double value) {
    filter.set(name, value);
    return filter.number(name);
}

/// Neither ffmpeg nor melt keeps a value in its range: 2.5 was seen.
TEST_F(Frei0rValues, OutsideOfTheRangeAreTheNearestInIt) {
    EXPECT_EQ(taken(filter_, "Blur Amount", 2.5), 1.0);
    EXPECT_EQ(taken(filter_, "Blur Amount", -0.5), 0.0);
    EXPECT_EQ(taken(filter_, "Blur Amount", std::numeric_limits<double>::infinity()), 1.0);
    EXPECT_EQ(taken(filter_, "Blur Repeat Num", 99.0), 1.0);
    EXPECT_EQ(taken(filter_, "Enable 1", 7.0), 1.0);
    EXPECT_EQ(taken(filter_, "Enable 1", -7.0), 0.0);
    filter_.set("Color 1", frei0r::Color{1.5F, -1.0F, 0.5F});
    EXPECT_EQ(filter_.color("Color 1").red, 1.0F);
    EXPECT_EQ(filter_.color("Color 1").green, 0.0F);
    EXPECT_EQ(filter_.color("Color 1").blue, 128 / 255.0F);
}

TEST_F(Frei0rValues, ThatAreNoNumberChangeNothing) {
    const double nan = std::nan("");
    filter_.set("Blur Amount", 0.25);
    EXPECT_EQ(taken(filter_, "Blur Amount", nan), 0.25);
    EXPECT_EQ(taken(filter_, "Enable 1", nan), 1.0);
    filter_.set("Color 1", frei0r::Color{std::nanf(""), 1.0F, 1.0F});
    EXPECT_EQ(filter_.color("Color 1").red, 0.0F);
}

TEST_F(Frei0rValues, OfAmountsGoToTheNearestThousandthOfTheirUnit) {
    EXPECT_DOUBLE_EQ(taken(filter_, "Blur Amount", 0.04), 0.04);
    EXPECT_DOUBLE_EQ(taken(filter_, "Blur Amount", 0.0400004), 0.04);
    EXPECT_DOUBLE_EQ(taken(filter_, "Blur Amount", 0.0400006), 0.040001);
    EXPECT_DOUBLE_EQ(taken(filter_, "Color 1 Range", 0.123456), 0.12346); // of 100: 12.346
    EXPECT_DOUBLE_EQ(taken(filter_, "1 : Boundary Bias", 1e-9), 0.0);
}

TEST_F(Frei0rValues, OfWholeNumbersGoToTheNearest) {
    EXPECT_DOUBLE_EQ(taken(filter_, "Blur Repeat Num", 0.5), 5.0 / 9.0); // 5.5: 6
    EXPECT_DOUBLE_EQ(taken(filter_, "Blur Repeat Num", 0.49), 4.0 / 9.0);
    EXPECT_EQ(taken(filter_, "Enable 2", 0.5), 1.0);
    EXPECT_EQ(taken(filter_, "Enable 2", 0.4999), 0.0);
}

TEST_F(Frei0rValues, OfChoicesAreNamesOrNumbers) {
    filter_.set("View", "Base");
    const RgbaPicture byName = filter_.update(picture_);
    filter_.set("View", "4");
    EXPECT_EQ(filter_.text("View"), "Base");
    EXPECT_TRUE(filter_.update(picture_) == byName);
    filter_.set("View", "process 2");
    EXPECT_EQ(filter_.text("View"), "Process 2");
    EXPECT_FALSE(filter_.update(picture_) == byName);
}

TEST_F(Frei0rValues, ThatAreNoChoiceAreToldOnceAndChangeNothing) {
    filter_.set("View", "Base");
    testing::internal::CaptureStderr();
    filter_.set("View", "Sideways");
    filter_.set("View", "Sideways");
    filter_.set("View", "2"); // the separator
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_EQ(told.find("kovalune: 'View' has no choice 'Sideways'; it takes Normal, "), 0U) << told;
    EXPECT_EQ(told.find("Sideways", 40), std::string::npos) << told;
    EXPECT_NE(told.find("only separates the choices"), std::string::npos) << told;
    EXPECT_EQ(filter_.text("View"), "Base");
}

TEST_F(Frei0rValues, OfEmptyTextsAreTheFactorys) {
    filter_.set("View", "Base");
    testing::internal::CaptureStderr();
    filter_.set("View", "");
    filter_.set("Settings File", "");
    EXPECT_EQ(filter_.text("View"), "Normal");
    EXPECT_EQ(filter_.text("Settings File"), "");
    char* none = nullptr;
    file_.setParamValue(filter_.instance(), static_cast<void*>(&none), placeOf(file_, "View"));
    EXPECT_EQ(filter_.text("View"), "Normal");
    filter_.update(picture_);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Frei0rValues, WithoutAPlaceOrAnInstanceChangeNothing) {
    double value = 0.5;
    for (const int place : {-1, 48, 1 << 30}) {
        file_.setParamValue(filter_.instance(), &value, place);
        file_.getParamValue(filter_.instance(), &value, place);
    }
    file_.setParamValue(nullptr, &value, 2);
    file_.setParamValue(filter_.instance(), nullptr, 2);
    file_.getParamValue(nullptr, &value, 2);
    file_.getParamValue(filter_.instance(), nullptr, 2);
    EXPECT_EQ(value, 0.5);
    EXPECT_DOUBLE_EQ(filter_.number("Blur Amount"), 0.01);
    file_.destruct(nullptr);
}

/// ffmpeg passes an empty field of a number as 0; so the only text is the first parameter, and numbers have to be written out.
TEST_F(Frei0rValues, OfFfmpegsEmptyFieldsAreZero) {
    EXPECT_EQ(taken(filter_, "Blur Amount", 0.0), 0.0);
    EXPECT_EQ(placeOf(file_, "Settings File"), 0);
}

} // namespace
} // namespace kovalune::test
