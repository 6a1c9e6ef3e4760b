// The remembered defaults as tools reach them, with an effect that is set up in the reference host.

#include "effect/Kovalune.h"
#include "host/Session.h"
#include "tests/platform/ScopedVariable.h"
#include "tests/platform/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

namespace kovalune::test {
namespace {

class Defaults : public testing::Test {
protected:
    const TemporaryFolder folder_;
    const ScopedVariable settings_{"XDG_CONFIG_HOME", folder_.path().c_str()};
};

/// The effect in a host, with the values that it has.
struct Instance {
    Instance() : module(host::EffectModule::linked(EntryPointFunc)), session(host, module) {
        EXPECT_TRUE(session.setupResult().ok());
    }
    void set(const char* label, host::ParamValue value) {
        session.setValue(*session.findParam(label), value);
    }
    const PF_ParamDef& param(const char* label) const {
        return session.params()[static_cast<std::size_t>(*session.findParam(label))];
    }

    host::Host host;
    host::EffectModule module;
    host::Session session;
};

TEST_F(Defaults, LieInTheUsersSettings) {
    EXPECT_EQ(defaultsPath(), folder_.file("ORVEL/Tavik/Kovalune.ini"));
    const ScopedVariable longest("XDG_CONFIG_HOME", ("/" + std::string(250, 'x')).c_str());
    EXPECT_EQ(defaultsPath(), "");
}

TEST_F(Defaults, AreThoseOfTheNextHostOnceRemembered) {
    {
        Instance instance;
        instance.set("Blur Amount", 12.5);
        instance.set("View", A_long{5});
        EXPECT_EQ(rememberDefaults(defaultsPath(), instance.session.paramsWithValues()),
                  DefaultsResult::kDone);
    }
    Instance next;
    EXPECT_EQ(std::get<double>(next.session.value(*next.session.findParam("Blur Amount"))), 12.5);
    EXPECT_EQ(std::get<A_long>(next.session.value(*next.session.findParam("View"))), 5);
    EXPECT_EQ(forgetDefaults(defaultsPath()), DefaultsResult::kDone);
    EXPECT_EQ(forgetDefaults(defaultsPath()), DefaultsResult::kNothingThere);
    EXPECT_EQ(folder_.entries(), 0);
    Instance last;
    EXPECT_EQ(std::get<double>(last.session.value(*last.session.findParam("Blur Amount"))), 10.0);
}

TEST_F(Defaults, TellWhichParametersTheyHold) {
    std::filesystem::create_directories(folder_.file("ORVEL/Tavik"));
    folder_.write("ORVEL/Tavik/Kovalune.ini",
                  "[Version=1.0]\r\nView=3\r\nColor 2.b=9\r\nColor 3.a=9\r\n[Version=2.0]\r\nEnable 1=0\r\n");
    const Instance instance;
    const std::string path = defaultsPath();
    EXPECT_TRUE(isDefaultRemembered(path, instance.param("View")));
    EXPECT_TRUE(isDefaultRemembered(path, instance.param("Color 2")));
    // Its alpha is never read.
    EXPECT_FALSE(isDefaultRemembered(path, instance.param("Color 3")));
    EXPECT_FALSE(isDefaultRemembered(path, instance.param("Enable 1")));
}

TEST_F(Defaults, AreNotRememberedFromParametersOfSomethingElse) {
    Instance instance;
    std::vector<PF_ParamDef> params = instance.session.paramsWithValues();
    const std::span<const PF_ParamDef> all = params;
    for (const auto& some :
         {all.first(0), all.first(1), all.first(all.size() - 1), all.last(all.size() - 1)}) {
        EXPECT_EQ(rememberDefaults(defaultsPath(), some), DefaultsResult::kWrongParameters);
    }
    params[3].param_type = PF_Param_SLIDER;
    EXPECT_EQ(rememberDefaults(defaultsPath(), params), DefaultsResult::kWrongParameters);
    EXPECT_EQ(folder_.entries(), 0);
}

TEST_F(Defaults, AreNotRememberedBeforeTheEffectIsSetUp) {
    const std::vector<PF_ParamDef> params(58);
    EXPECT_EQ(rememberDefaults(defaultsPath(), params), DefaultsResult::kWrongParameters);
    EXPECT_EQ(rememberDefaults(defaultsPath(), {}), DefaultsResult::kWrongParameters);
}

TEST_F(Defaults, TellOfWhatCannotBeWrittenOrDeleted) {
    Instance instance;
    const std::vector<PF_ParamDef> params = instance.session.paramsWithValues();
    std::filesystem::create_directories(folder_.file("ORVEL/Tavik/Kovalune.ini"));
    int reason = 0;
    EXPECT_EQ(rememberDefaults(defaultsPath(), params, &reason), DefaultsResult::kFailed);
    EXPECT_NE(reason, 0);
    EXPECT_EQ(forgetDefaults(defaultsPath()), DefaultsResult::kFailed);
    EXPECT_EQ(rememberDefaults("", params), DefaultsResult::kFailed);
    EXPECT_EQ(forgetDefaults(""), DefaultsResult::kNothingThere);
}

TEST_F(Defaults, StandInTheSectionOfThisVersion) {
    EXPECT_EQ(defaultsSection(), "Version=1.0");
    Instance instance;
    const std::string path = defaultsPath();
    ASSERT_EQ(rememberDefaults(path, instance.session.paramsWithValues()), DefaultsResult::kDone);
    EXPECT_TRUE(contentOf(path).starts_with('[' + defaultsSection() + ']'));
}

double blurAmount() {
    const Instance instance;
    return std::get<double>(instance.session.value(*instance.session.findParam("Blur Amount")));
}

TEST_F(Defaults, DoNotCountForTheThreadThatWantsTheFactorys) {
    std::filesystem::create_directories(folder_.file("ORVEL/Tavik"));
    folder_.write("ORVEL/Tavik/Kovalune.ini", "[Version=1.0]\r\nBlur Amount=12.5\r\n");
    EXPECT_EQ(blurAmount(), 12.5);
    {
        const FactoryDefaultsScope factory;
        EXPECT_EQ(blurAmount(), 10.0);
        { const FactoryDefaultsScope inner; }
        EXPECT_EQ(blurAmount(), 10.0);
        double elsewhere = 0.0;
        std::thread([&elsewhere] { elsewhere = blurAmount(); }).join();
        EXPECT_EQ(elsewhere, 12.5);
    }
    EXPECT_EQ(blurAmount(), 12.5);
}

/// Whoever opened the pipe to read would wait for somebody who writes.
TEST_F(Defaults, AreNotEvenLookedAtForTheFactorys) {
    std::filesystem::create_directories(folder_.file("ORVEL/Tavik"));
    ASSERT_EQ(::mkfifo(folder_.file("ORVEL/Tavik/Kovalune.ini").c_str(), 0600), 0);
    const FactoryDefaultsScope factory;
    EXPECT_EQ(blurAmount(), 10.0);
}

TEST_F(Defaults, CanBeRememberedFromTheFactorys) {
    const FactoryDefaultsScope factory;
    Instance instance;
    instance.set("Blur Amount", 12.5);
    ASSERT_EQ(rememberDefaults(defaultsPath(), instance.session.paramsWithValues()), DefaultsResult::kDone);
    EXPECT_TRUE(isDefaultRemembered(defaultsPath(), instance.param("Blur Amount")));
}

} // namespace
} // namespace kovalune::test
