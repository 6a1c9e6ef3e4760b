// A host with a window on the screen, whose user opens the effect's Option dialog and has no remembered defaults yet.
#pragma once

#include "host/EffectModule.h"
#include "host/Session.h"
#include "host/judge/JudgedHost.h"
#include "tests/platform/TemporaryFolder.h"
#include "tests/windows/DialogUser.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>

namespace kovalune::test {

/// The user's own defaults are never touched: where there are some, every test fails before it has done anything.
class DialogScene : public testing::Test {
protected:
    DialogScene();
    ~DialogScene() override;
    void SetUp() override;
    void TearDown() override;

    /// Loads the plug-in anew, as the host's next start does. What is changed in `options` before counts.
    void startHost();
    void endHost();

    /// Sends the command; `act` is what is done in the dialog, which has to close by it.
    void openDialog(DialogUser::Act act);
    /// Opens the dialog and clicks on one of its controls.
    void choose(int control);

    /// By the parameter's name, of all that have a value, as the host has it now; a colour from alpha to blue.
    using Defaults = std::map<std::string, std::string>;
    Defaults defaults() const;
    void set(const std::string& parameter, const host::ParamValue& value);

    host::judge::JudgedHost& host() { return *host_; }
    HWND window() const { return window_; }
    const std::filesystem::path& settings() const { return settings_; }
    std::filesystem::path file() const { return settings_ / "ORVEL" / "Tavik" / "Kovalune.ini"; }
    /// The maker's folder with all that is in it.
    std::filesystem::path makersFolder() const { return settings_ / "ORVEL"; }

    host::judge::JudgeOptions options;

private:
    std::filesystem::path settings_;
    bool mayWrite_ = false;
    HWND window_ = nullptr;
    std::unique_ptr<host::EffectModule> module_;
    std::unique_ptr<host::judge::JudgedHost> host_;
    std::unique_ptr<host::Session> session_;
};

RECT placeOf(HWND window);

} // namespace kovalune::test
