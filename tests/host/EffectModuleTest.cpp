#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <utility>

namespace kovalune::test {
using namespace host;
namespace {

TEST(EffectModule, ALoadedEffectRunsItsCommands) {
    Host host;
    EffectModule module = EffectModule::load(HOST_TEST_EFFECT);
    EXPECT_EQ(module.path(), HOST_TEST_EFFECT);
    EXPECT_NE(module.systemHandle(), nullptr);
    Session session(host, module);
    EXPECT_EQ(session.effectVersion(), 77U);
    EXPECT_EQ(session.about().returnMsg, "loaded");
    Image output;
    RenderRequest request;
    request.flow = RenderFlow::kLegacy;
    EXPECT_TRUE(session.render(patterned(PF_PixelFormat_ARGB32, 5, 3), output, request).ok());
    EXPECT_EQ(output.at<PF_Pixel>(4, 2).blue, 0x77);
}

// The effect counts its calls in a static, which starts anew with every load.
TEST(EffectModule, AModuleIsUnloadedAtItsEnd) {
    const auto callsOfAFreshLoad = [] {
        Host host;
        EffectModule module = EffectModule::load(HOST_TEST_EFFECT);
        Session session(host, module);
        return session.about().out.out_flags;
    };
    EXPECT_EQ(callsOfAFreshLoad(), 3);
    EXPECT_EQ(callsOfAFreshLoad(), 3);
}

TEST(EffectModule, MovesItsLibraryAlong) {
    EffectModule first = EffectModule::load(HOST_TEST_EFFECT);
    EffectModule second = EffectModule::linked(scriptedEntry);
    {
        EffectModule between = std::move(first);
        second = std::move(between);
    }
    Host host;
    Session session(host, second);
    EXPECT_EQ(session.about().returnMsg, "loaded"); // the file is still there to be called
}

TEST(EffectModule, AMissingFileOrEntryIsAnErrorWithItsName) {
    try {
        EffectModule::load("/nowhere/none.aex");
        FAIL() << "loaded a missing file";
    } catch (const HostError& error) {
        EXPECT_NE(std::string(error.what()).find("none.aex"), std::string::npos);
    }
    try {
        EffectModule::load(HOST_TEST_NO_ENTRY);
        FAIL() << "loaded a file without the entry";
    } catch (const HostError& error) {
        EXPECT_EQ(std::string(error.what()), HOST_TEST_NO_ENTRY " has no EntryPointFunc");
    }
    EXPECT_THROW(EffectModule::linked(nullptr), HostError);
}

TEST(EffectModule, ModulesWithOneEntryShareTheirCommandMutex) {
    const EffectModule a = EffectModule::linked(scriptedEntry);
    const EffectModule b = EffectModule::linked(scriptedEntry);
    EXPECT_EQ(&a.commandMutex(), &b.commandMutex());
    const EffectModule c = EffectModule::load(HOST_TEST_EFFECT);
    EXPECT_NE(&a.commandMutex(), &c.commandMutex());
}

} // namespace
} // namespace kovalune::test
