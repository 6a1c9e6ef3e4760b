// PF_Cmd_DO_DIALOG with a dialog that the test answers: what it asks the host for, and what stands on the disk after it.

#include "effect/params/FxOptionDlg/AEFxOptionDialog.h"
#include "effect/params/ParamRegistry.h"
#include "hostapi/EntryPoint.h"
#include "tests/frame/ChildProcess.h"
#include "tests/frame/StubHost.h"
#include "tests/params/FakeWindows.h"
#include "tests/platform/ScopedUser.h"
#include "tests/platform/ScopedVariable.h"
#include "tests/platform/TemporaryFolder.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <ostream>
#ifdef _WIN32
#include <windows.h>
#endif

namespace kovalune::test {
namespace {

namespace fs = std::filesystem;
using Calls = std::vector<std::string>;

/// An instance of the effect and a user with an empty folder for settings.
class OptionDialogCommand : public testing::Test {
protected:
    PF_Err send(PF_Cmd cmd, StubHost& host) {
        return EntryPointFunc(cmd, &host.in, &host.out, host.paramArray(), nullptr, nullptr);
    }
    /// Starts the host and registers the parameters.
    void setUp(StubHost& host) {
        ASSERT_EQ(send(PF_Cmd_GLOBAL_SETUP, host), 0);
        ASSERT_EQ(send(PF_Cmd_PARAMS_SETUP, host), 0);
        host.calls.clear();
    }
    /// The user ends the dialog with this result.
    void answer(intptr_t result) {
        windows_.result = result;
        ASSERT_EQ(send(PF_Cmd_DO_DIALOG, host_), 0);
    }
    fs::path path() const { return folder_.file("ORVEL/Tavik/Kovalune.ini"); }

    const TemporaryFolder folder_;
    const ScopedSettings settings_{folder_.path()};
    const ScopedLanguage language_{UserLanguage::kEnglish};
    FakeWindows windows_;
    StubHost host_;
};

TEST_F(OptionDialogCommand, ShowsTheDialogOverTheHostsWindow) {
    int window = 0;
    host_.mainWindow = &window;
    host_.plugInPath = "/plug-ins/Kovalune.aex";
    setUp(host_);
    answer(0);
    ASSERT_EQ(windows_.requests.size(), 1U);
    EXPECT_EQ(windows_.requests[0].parent, &window);
    EXPECT_EQ(windows_.requests[0].resource, 201);
    EXPECT_EQ(host_.calls, (Calls{"get_platform_data", "get_platform_data"}));
    EXPECT_EQ(host_.suiteBalance(), 0);
    EXPECT_EQ(host_.references.back(), host_.in.effect_ref);
}

TEST_F(OptionDialogCommand, OpensWithoutWindowAndPath) {
    setUp(host_);
    host_.failAll("get_platform_data", 513);
    answer(2);
    ASSERT_EQ(windows_.requests.size(), 1U);
    EXPECT_EQ(windows_.requests[0].parent, nullptr);
    EXPECT_EQ(windows_.requests[0].module, nullptr);
}

TEST_F(OptionDialogCommand, DoesNothingWhereNothingWasChosen) {
    setUp(host_);
    for (const intptr_t result : {-1, 0}) {
        answer(result);
    }
    EXPECT_EQ(windows_.requests.size(), 2U);
    EXPECT_EQ(folder_.entries(), 0);
    fs::create_directories(path().parent_path());
    folder_.write("ORVEL/Tavik/Kovalune.ini", "mine");
    answer(0);
    EXPECT_EQ(contentOf(path()), "mine");
}

TEST_F(OptionDialogCommand, RemembersTheValuesThatTheHostHandsIn) {
    setUp(host_);
    host_.params[1].u.pd.value = 5;
    host_.params[3].u.fs_d.value = 12.5;
    host_.params[6].u.bd.value = 0;
    host_.params[7].u.cd.value = {9, 1, 2, 4};
    host_.params[56].u.bd.value = 0;
    answer(1);
    const std::string text = contentOf(path());
    EXPECT_TRUE(text.starts_with("[Version=1.0]\r\nView=5\r\nBlur Amount=12.500000\r\n")) << text;
    for (const char* line : {"\nEnable 1=0\r", "\nColor 1.r=1\r", "\nColor 1.g=2\r", "\nColor 1.b=4\r",
                             "\nColor 1.a=9\r", "\n4 : Keep Process=0\r"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line;
    }
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 39 + 8 * 4);
    EXPECT_EQ(host_.count("checkout_param"), 0);
    EXPECT_EQ(host_.count("checkin_param"), 0);
}

TEST_F(OptionDialogCommand, RemembersNothingOfAHostThatHandsInNoValues) {
    setUp(host_);
    windows_.result = 1;
    EXPECT_EQ(EntryPointFunc(PF_Cmd_DO_DIALOG, &host_.in, &host_.out, nullptr, nullptr, nullptr), 0);
    EXPECT_FALSE(fs::exists(path()));
}

TEST_F(OptionDialogCommand, ForgetsWhatWasRemembered) {
    setUp(host_);
    answer(1);
    ASSERT_TRUE(fs::exists(path()));
    answer(2);
    EXPECT_EQ(folder_.entries(), 0);
}

TEST_F(OptionDialogCommand, MakesTheFoldersForForgettingTooAndRemovesThemWhereTheyAreEmpty) {
    setUp(host_);
    answer(2);
    EXPECT_EQ(folder_.entries(), 0);

    fs::create_directories(folder_.file("ORVEL/Other"));
    answer(2);
    EXPECT_FALSE(fs::exists(folder_.file("ORVEL/Tavik")));
    EXPECT_TRUE(fs::exists(folder_.file("ORVEL/Other")));
}

#ifndef _WIN32
/// The folder for settings itself is one of those that are made, and the one that stays. Windows knows it only when it is
/// there.
TEST_F(OptionDialogCommand, MakesTheFolderForSettingsItself) {
    const ScopedSettings deeper(folder_.file("new/settings"));
    setUp(host_);
    answer(2);
    EXPECT_TRUE(fs::is_empty(folder_.file("new/settings")));
}
#endif

TEST_F(OptionDialogCommand, MakesFoldersForAnyOtherResultAndNoMore) {
    setUp(host_);
    answer(3);
    EXPECT_TRUE(fs::is_empty(folder_.file("ORVEL/Tavik")));
}

TEST_F(OptionDialogCommand, IsSilentWhereNothingCanBeWritten) {
    setUp(host_);
    folder_.write("ORVEL", "a file");
    std::strcpy(host_.out.return_msg, "as it was");
    answer(1);
    answer(2);
    EXPECT_EQ(contentOf(folder_.file("ORVEL")), "a file");
    EXPECT_STREQ(host_.out.return_msg, "as it was");
}

TEST_F(OptionDialogCommand, DoesNothingWhereThePathDoesNotFit) {
    const std::string longest = folder_.fileOfLength(240);
    fs::create_directories(longest);
    const ScopedSettings settings(longest);
    const std::ptrdiff_t entries = folder_.allEntries();
    setUp(host_);
    answer(1);
    answer(2);
    EXPECT_EQ(folder_.allEntries(), entries);
}

TEST_F(OptionDialogCommand, WritesWhereThePathJustFits) {
    const std::string longest = folder_.fileOfLength(259 - std::strlen("/ORVEL/Tavik/Kovalune.ini"));
    fs::create_directories(longest);
    const ScopedSettings settings(longest);
    const std::ptrdiff_t entries = folder_.allEntries();
    setUp(host_);
    answer(1);
    EXPECT_TRUE(
        contentOf(fs::path(longest) / "ORVEL" / "Tavik" / "Kovalune.ini").starts_with("[Version=1.0]"));
    EXPECT_EQ(folder_.allEntries(), entries + 3);
    answer(2);
    EXPECT_EQ(folder_.allEntries(), entries);
}

/// Hosts have room for 260 bytes and may fill them all, without an end.
TEST_F(OptionDialogCommand, SurvivesAPlugInPathOfAnyLength) {
    setUp(host_);
    for (const std::size_t length : {1U, 258U, 259U, 260U}) {
        host_.plugInPath = std::string(length, 'x');
        answer(0);
        ASSERT_FALSE(windows_.requests.empty());
        EXPECT_EQ(windows_.requests.back().module, nullptr) << length;
    }
    EXPECT_EQ(windows_.requests.size(), 4U);
    EXPECT_EQ(folder_.entries(), 0);
}

#ifdef _WIN32
TEST_F(OptionDialogCommand, TakesTheDialogFromTheModuleOfThePlugInsPath) {
    char path[MAX_PATH];
    ASSERT_NE(GetModuleFileNameA(nullptr, path, sizeof path), 0U);
    host_.plugInPath = path;
    setUp(host_);
    answer(0);
    ASSERT_EQ(windows_.requests.size(), 1U);
    EXPECT_EQ(windows_.requests[0].module, GetModuleHandleA(nullptr));
}
#endif

/// Plays the dialog's opening and notes what is greyed out.
void playOpening(FakeWindows& windows) {
    windows.show = [&windows](const platform::DialogRequest& request) -> intptr_t {
        windows.calls.clear();
        request.procedure(FakeWindows::window(8), 272, 0, reinterpret_cast<intptr_t>(request.object));
        return 0;
    };
}

struct HostCase {
    A_long application;
    PF_SpecVersion version;
    bool old;
};

std::ostream& operator<<(std::ostream& stream, const HostCase& host) {
    return stream << host.application << ' ' << host.version.major << '.' << host.version.minor;
}

class OptionDialogOfAHost : public OptionDialogCommand, public testing::WithParamInterface<HostCase> {};

TEST_P(OptionDialogOfAHost, GreysOutItsButtonsIfTheHostIsOld) {
    host_.in.appl_id = GetParam().application;
    host_.in.version = GetParam().version;
    setUp(host_);
    playOpening(windows_);
    answer(0);
    EXPECT_EQ(windows_.calls.back() == "disable 2002008", GetParam().old);
    EXPECT_EQ(std::count(windows_.calls.begin(), windows_.calls.end(), "disable 2001008"),
              GetParam().old ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Hosts, OptionDialogOfAHost,
                         testing::Values(HostCase{PF_AppID_FXTC, {12, 14}, false},
                                         HostCase{PF_AppID_FXTC, {12, 12}, false},
                                         HostCase{PF_AppID_FXTC, {12, 11}, true},
                                         HostCase{PF_AppID_FXTC, {11, 99}, true},
                                         HostCase{PF_AppID_PrMr, {1, 0}, false}));

TEST_F(OptionDialogCommand, HasNoTitleInEnglish) {
    setUp(host_);
    playOpening(windows_);
    answer(0);
    ASSERT_GE(windows_.calls.size(), 4U);
    EXPECT_EQ(windows_.calls[0], "text 8 ");
    EXPECT_EQ(windows_.calls[1], "text 2000008 Settings (Valid from next start-up)");
}

TEST_F(OptionDialogCommand, IsJapaneseForAJapaneseUser) {
    const ScopedLanguage language(UserLanguage::kJapanese);
    setUp(host_);
    playOpening(windows_);
    answer(0);
    ASSERT_GE(windows_.calls.size(), 4U);
    EXPECT_EQ(windows_.calls[0], "text 8 Kovalune");
    EXPECT_EQ(windows_.calls[1], "text 2000008 設定 （次回起動から有効になります）");
}

TEST_F(OptionDialogCommand, NeedsABasicSuite) {
    setUp(host_);
    host_.in.pica_basicP = nullptr;
    long thrown = 0;
    try {
        send(PF_Cmd_DO_DIALOG, host_);
    } catch (long code) {
        thrown = code;
    }
    EXPECT_EQ(thrown, 516);
    EXPECT_TRUE(windows_.requests.empty());
}

TEST_F(OptionDialogCommand, IsNotSentToAnOperationOfTheFilter) {
    // Behind the end of the effect's filter the dialog still answers.
    setUp(host_);
    ASSERT_EQ(send(PF_Cmd_GLOBAL_SETDOWN, host_), 0);
    answer(1);
    EXPECT_TRUE(fs::exists(path()));
}

/// Set for the child.
constexpr char kChild[] = "KOVALUNE_CHILD_REMEMBERS";

/// Two processes: the first remembers, the one that starts next has the values as its defaults.
TEST_F(OptionDialogCommand, GivesTheNextProcessItsDefaults) {
    const ScopedVariable child(kChild, "1");
    ASSERT_EQ(
        runThisProgramAgain({"--gtest_filter=*DISABLED_ChildRemembers", "--gtest_also_run_disabled_tests"}),
        0);
    setUp(host_);
    EXPECT_EQ(host_.params[1].u.pd.dephault, 3);
    EXPECT_EQ(host_.params[3].u.fs_d.value, 12.5);
    EXPECT_EQ(host_.params[7].u.cd.dephault.blue, 4);
    EXPECT_EQ(host_.params[10].u.cd.dephault.red, 3);
}

/// Runs in the child alone, for the user of the test above.
TEST(OptionDialogCommandProcess, DISABLED_ChildRemembers) {
    ASSERT_NE(std::getenv(kChild), nullptr) << "this would change the defaults of whoever runs it";
    FakeWindows windows;
    StubHost host;
    const auto send = [&host](PF_Cmd cmd) {
        return EntryPointFunc(cmd, &host.in, &host.out, host.paramArray(), nullptr, nullptr);
    };
    ASSERT_EQ(send(PF_Cmd_GLOBAL_SETUP), 0);
    ASSERT_EQ(send(PF_Cmd_PARAMS_SETUP), 0);
    host.params[1].u.pd.value = 3;
    host.params[3].u.fs_d.value = 12.5;
    host.params[7].u.cd.value = {255, 1, 2, 4};
    windows.result = 1;
    ASSERT_EQ(send(PF_Cmd_DO_DIALOG), 0);
}

} // namespace
} // namespace kovalune::test
