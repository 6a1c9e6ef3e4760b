// The host's sprintf under a locale that writes a comma for the decimal point.
#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

namespace kovalune::test {
using namespace host;
namespace {

/// Makes such a locale in a folder of its own and sets it, where the system has the sources for one.
class CommaLocale : public testing::Test {
protected:
    void SetUp() override {
        std::string folder = (std::filesystem::temp_directory_path() / "kovalune-XXXXXX").string();
        ASSERT_NE(mkdtemp(folder.data()), nullptr);
        folder_ = folder;
        setenv("LOCPATH", folder.c_str(), 1);
        const std::string make =
            "localedef -i de_DE -f UTF-8 '" + folder + "/comma' >/dev/null 2>&1 </dev/null";
        static_cast<void>(std::system(make.c_str()));
        const char* set = std::setlocale(LC_ALL, (folder + "/comma").c_str());
        if (set == nullptr) {
            set = std::setlocale(LC_ALL, "comma");
        }
        if (set == nullptr || printed() != "0,5") {
            GTEST_SKIP() << "no locale with a decimal comma can be made here";
        }
    }
    void TearDown() override {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
        std::filesystem::remove_all(folder_);
    }

    static std::string printed() {
        char text[16];
        std::snprintf(text, sizeof text, "%.1f", 0.5);
        return text;
    }

private:
    std::filesystem::path folder_;
};

TEST_F(CommaLocale, TheHostsSprintfKeepsThePointAndTheProgramItsLocale) {
    Stage stage;
    const CommandResult result = stage.during([](Call& c) {
        c.utils().ansi.sprintf(c.out.return_msg, "%.2f", 1.25);
        return PF_Err_NONE;
    });
    EXPECT_EQ(result.returnMsg, "1.25");
    EXPECT_EQ(printed(), "0,5");
}

} // namespace
} // namespace kovalune::test
