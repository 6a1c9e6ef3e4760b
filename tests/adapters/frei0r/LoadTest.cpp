// What loading, describing and unloading do to a process: nothing that stays.

#include "tests/adapters/frei0r/TestHost.h"
#include "tests/platform/ScopedVariable.h"
#include "tests/support/TestFolder.h"

#include <clocale>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace kovalune::test {
namespace {

int threadCount() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("Threads:")) {
            return std::stoi(line.substr(8));
        }
    }
    return -1;
}

std::vector<std::string> environment() {
    std::vector<std::string> lines;
    for (char** line = environ; *line != nullptr; ++line) {
        lines.emplace_back(*line);
    }
    return lines;
}

bool isLoaded() {
    void* const library = ::dlopen(KOVALUNE_FREI0R_FILE, RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr) {
        ::dlclose(library);
    }
    return library != nullptr;
}

/// The fact sheet's plug-in is loaded and unloaded by the hundred when melt looks for its services.
TEST(Frei0rLoads, LeaveNoThreadAndNoCode) {
    constexpr int kLoads = 100;
    const int before = threadCount();
    const RgbaPicture picture = blocks(600, 40);
    for (int load = 0; load < kLoads; ++load) {
        {
            const Ready file;
            LoadedFilter filter(file, picture.width, picture.height);
            ASSERT_EQ(threadCount(), before) << "before the first frame";
            if (load % 10 == 0) {
                filter.set("Color 1", frei0r::Color{50 / 255.0F, 100 / 255.0F, 180 / 255.0F});
                EXPECT_FALSE(filter.update(picture) == picture);
            }
        }
        ASSERT_EQ(threadCount(), before) << load;
        ASSERT_FALSE(isLoaded());
    }
}

TEST(Frei0rLoads, LeaveLocaleEnvironmentAndFolderAsTheyWere) {
    const ScopedVariable language("LC_ALL", "C.UTF-8"); // what the effect's first call would set
    for (const char* const locale : {"C", "C.UTF-8"}) {
        ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr);
        const std::string before = std::setlocale(LC_ALL, nullptr);
        const std::vector<std::string> variables = environment();
        const std::filesystem::path folder = std::filesystem::current_path();
        {
            const Ready file;
            EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
            LoadedFilter filter(file, 32, 32);
            filter.update(blocks(32, 32));
        }
        EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
        EXPECT_EQ(environment(), variables);
        EXPECT_EQ(std::filesystem::current_path(), folder);
    }
    std::setlocale(LC_ALL, "C");
}

/// The effect's first call, which sets the locale, is over by then.
TEST(Frei0rLoads, AreDoneWithTheLocaleAfterInit) {
    const ScopedVariable language("LC_ALL", "C");
    const Ready file;
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    LoadedFilter filter(file, 32, 32);
    filter.update(blocks(32, 32));
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C.UTF-8");
    std::setlocale(LC_ALL, "C");
}

/// What a user has remembered in another application does not change a clip.
TEST(Frei0rLoads, TakeNoRememberedDefaults) {
    const TestFolder config;
    const std::filesystem::path file = config / "ORVEL/Tavik/Kovalune.ini";
    std::filesystem::create_directories(file.parent_path());
    const std::string text = "[Version=1.0]\r\nBlur Amount=500\r\n";
    writeBytes(file, {text.begin(), text.end()});
    const ScopedVariable settings("XDG_CONFIG_HOME", config.path().c_str());
    const Ready ready;
    const LoadedFilter filter(ready, 8, 8);
    EXPECT_DOUBLE_EQ(filter.number("Blur Amount"), 0.01);
}

} // namespace
} // namespace kovalune::test
