// What saved projects refer to: the names of the plug-in's parameters and their order. A line may be added at the end; none may
// change or go.

#include "tests/adapters/openfx/TestHost.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

constexpr const char* kFirstVersion[] = {
    "view OfxParamTypeChoice",
    "base OfxParamTypeGroup",
    "baseBlurAmount OfxParamTypeDouble",
    "baseBlurRepeatNum OfxParamTypeInteger",
    "baseKeepDivision OfxParamTypeBoolean",
    "baseEnable1 OfxParamTypeBoolean",
    "baseColor1 OfxParamTypeRGB",
    "baseColor1Range OfxParamTypeDouble",
    "baseEnable2 OfxParamTypeBoolean",
    "baseColor2 OfxParamTypeRGB",
    "baseColor2Range OfxParamTypeDouble",
    "baseEnable3 OfxParamTypeBoolean",
    "baseColor3 OfxParamTypeRGB",
    "baseColor3Range OfxParamTypeDouble",
    "baseEnable4 OfxParamTypeBoolean",
    "baseColor4 OfxParamTypeRGB",
    "baseColor4Range OfxParamTypeDouble",
    "process1 OfxParamTypeGroup",
    "process1EnableProcess OfxParamTypeBoolean",
    "process1Color OfxParamTypeRGB",
    "process1ColorRange OfxParamTypeDouble",
    "process1BoundaryBlur OfxParamTypeDouble",
    "process1BlurRepeatNum OfxParamTypeInteger",
    "process1BoundaryBias OfxParamTypeDouble",
    "process1KeepDivision OfxParamTypeBoolean",
    "process2 OfxParamTypeGroup",
    "process2EnableProcess OfxParamTypeBoolean",
    "process2Color OfxParamTypeRGB",
    "process2ColorRange OfxParamTypeDouble",
    "process2BoundaryBlur OfxParamTypeDouble",
    "process2BlurRepeatNum OfxParamTypeInteger",
    "process2BoundaryBias OfxParamTypeDouble",
    "process2KeepDivision OfxParamTypeBoolean",
    "process2KeepProcess OfxParamTypeBoolean",
    "process3 OfxParamTypeGroup",
    "process3EnableProcess OfxParamTypeBoolean",
    "process3Color OfxParamTypeRGB",
    "process3ColorRange OfxParamTypeDouble",
    "process3BoundaryBlur OfxParamTypeDouble",
    "process3BlurRepeatNum OfxParamTypeInteger",
    "process3BoundaryBias OfxParamTypeDouble",
    "process3KeepDivision OfxParamTypeBoolean",
    "process3KeepProcess OfxParamTypeBoolean",
    "process4 OfxParamTypeGroup",
    "process4EnableProcess OfxParamTypeBoolean",
    "process4Color OfxParamTypeRGB",
    "process4ColorRange OfxParamTypeDouble",
    "process4BoundaryBlur OfxParamTypeDouble",
    "process4BlurRepeatNum OfxParamTypeInteger",
    "process4BoundaryBias OfxParamTypeDouble",
    "process4KeepDivision OfxParamTypeBoolean",
    "process4KeepProcess OfxParamTypeBoolean",
    "pixelValues OfxParamTypeChoice",
};

TEST(OpenFxNames, AreThoseOfTheFirstVersionInTheirOrder) {
    TestHost host;
    ASSERT_TRUE(host.start());
    std::vector<std::string> names;
    for (const TestParam& param : host.descriptorIn(openfx::name::kContextFilter).params) {
        names.push_back(param.name + ' ' + param.type);
    }
    EXPECT_EQ(names, std::vector<std::string>(std::begin(kFirstVersion), std::end(kFirstVersion)));
    EXPECT_EQ(host.unload(), openfx::kOk);
}

TEST(OpenFxNames, OfThePlugInStay) {
    const TestHost host;
    const openfx::Plugin& plugin = host.plugin();
    EXPECT_STREQ(plugin.api, "OfxImageEffectPluginAPI");
    EXPECT_EQ(plugin.apiVersion, 1);
    EXPECT_STREQ(plugin.identifier, "com.orvel.Kovalune");
    EXPECT_EQ(plugin.versionMajor, 1U);
    EXPECT_EQ(plugin.versionMinor, 0U);
}

} // namespace
} // namespace kovalune::test
