// The effect that is linked into a process: there for every session, and without a trace in the process's locale.

#include "render/LinkedEffect.h"
#include "host/Session.h"
#include "hostapi/EntryPoint.h"
#include "render/LocaleGuard.h"
#include "render/OpenEffect.h"
#include "tests/platform/ScopedVariable.h"
#include "tests/platform/TemporaryFolder.h"

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace kovalune::test {

using namespace render;

namespace {

bool rendersAFrame() {
    OpenEffect effect(2, Defaults::kRemembered);
    const host::Image input(PF_PixelFormat_ARGB32, 4, 3);
    host::Image output;
    return effect.session().render(input, output).ok();
}

// The first call must be the process's very first, so each of these runs in a process of its own.
class LinkedEffectDeathTest : public testing::Test {
protected:
    LinkedEffectDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

TEST_F(LinkedEffectDeathTest, LeavesTheLocaleAsItWas) {
    const auto localesAround = [] {
        ::setenv("LC_ALL", "C.UTF-8", 1); // what the effect would set
        const std::string before = std::setlocale(LC_ALL, "C");
        const bool rendered = rendersAFrame();
        std::exit(rendered && before == std::setlocale(LC_ALL, nullptr) ? 0 : 1);
    };
    EXPECT_EXIT(localesAround(), testing::ExitedWithCode(0), "");
    const auto anotherLocale = [] {
        ::setenv("LC_ALL", "C", 1);
        const char* const before = std::setlocale(LC_ALL, "C.UTF-8");
        const std::string name = before != nullptr ? before : "";
        const bool rendered = rendersAFrame();
        std::exit(rendered && name == "C.UTF-8" && name == std::setlocale(LC_ALL, nullptr) ? 0 : 1);
    };
    EXPECT_EXIT(anotherLocale(), testing::ExitedWithCode(0), "");
}

TEST_F(LinkedEffectDeathTest, OutsideOfTheGuardSetsTheLocale) {
    const auto withoutGuard = [] {
        ::setenv("LC_ALL", "C.UTF-8", 1);
        std::setlocale(LC_ALL, "C");
        host::Host host;
        host::EffectModule module = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
        const host::Session session(host, module);
        std::exit(std::string("C.UTF-8") == std::setlocale(LC_ALL, nullptr) ? 0 : 1);
    };
    EXPECT_EXIT(withoutGuard(), testing::ExitedWithCode(0), "");
}

/// The values that a user has remembered, and what the process's environment is.
TEST(LinkedEffect, StartsFromTheFactorysValuesWithoutAnotherEnvironment) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.file("ORVEL/Tavik"));
    folder.write("ORVEL/Tavik/Kovalune.ini", "[Version=1.0]\r\nBlur Amount=12.5\r\n");
    const ScopedVariable settings("XDG_CONFIG_HOME", folder.path().c_str());
    const auto amount = [](Defaults defaults) {
        OpenEffect effect(1, defaults);
        return std::get<double>(effect.session().value(*effect.session().findParam("Blur Amount")));
    };
    EXPECT_EQ(amount(Defaults::kFactory), 10.0);
    EXPECT_EQ(std::getenv("XDG_CONFIG_HOME"), folder.path());
    EXPECT_EQ(amount(Defaults::kRemembered), 12.5);
}

TEST(LinkedEffect, ServesOneSessionAfterAnother) {
    EXPECT_TRUE(rendersAFrame());
    EXPECT_TRUE(rendersAFrame());
    EXPECT_EQ(&linkedEffect(), &linkedEffect());
}

TEST(LinkedEffect, ServesSessionsAtOnce) {
    host::Host host(toolOptions(1));
    const host::Image input(PF_PixelFormat_ARGB32, 4, 3);
    host::Image output;
    host::Session outer(host, linkedEffect());
    {
        host::Session inner(host, linkedEffect());
        EXPECT_TRUE(inner.render(input, output).ok());
    }
    EXPECT_TRUE(outer.render(input, output).ok());
}

TEST(ToolOptions, FixTheIterations) {
    EXPECT_EQ(toolOptions().iterations, 64);
    EXPECT_EQ(toolOptions().threads, 0);
    EXPECT_EQ(toolOptions(3).iterations, 64);
    EXPECT_EQ(toolOptions(3).threads, 3);
}

TEST(LocaleGuard, GivesTheLocaleBack) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    {
        const LocaleGuard guard;
        ASSERT_NE(std::setlocale(LC_ALL, before == "C" ? "C.UTF-8" : "C"), nullptr);
        EXPECT_NE(before, std::setlocale(LC_ALL, nullptr));
    }
    EXPECT_EQ(before, std::setlocale(LC_ALL, nullptr));
}

} // namespace
} // namespace kovalune::test
