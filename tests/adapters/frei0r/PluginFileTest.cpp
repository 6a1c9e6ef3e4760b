// The finished file: what it gives to others and what it needs.

#include "tests/adapters/frei0r/TestHost.h"
#include "tests/architecture/LibraryFile.h"
#include "tests/support/TestFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace kovalune::test {
namespace {

const std::string kFile = KOVALUNE_FREI0R_FILE;

TEST(Frei0rFile, ExportsTheInterfaceAndNothingElse) {
    EXPECT_EQ(symbolsOf(kFile, "--defined-only"),
              (std::set<std::string>{"f0r_construct", "f0r_deinit", "f0r_destruct", "f0r_get_param_info",
                                     "f0r_get_param_value", "f0r_get_plugin_info", "f0r_init",
                                     "f0r_set_param_value", "f0r_update"}));
}

/// /usr/lib/frei0r-1 and /usr/local/lib/frei0r-1, whatever the system calls its folder for libraries.
TEST(Frei0rFile, IsInstalledWhereHostsLook) {
    const TestFolder folder;
    ASSERT_EQ(std::system(("'" KOVALUNE_CMAKE "' --install '" KOVALUNE_BUILD_FOLDER
                           "' --component frei0r --prefix '" +
                           folder.path().string() + "' >/dev/null")
                              .c_str()),
              0);
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        if (entry.is_regular_file()) {
            files.insert(std::filesystem::relative(entry.path(), folder.path()).string());
        }
    }
    EXPECT_EQ(files, (std::set<std::string>{"lib/frei0r-1/kovalune.so",
                                            "share/kdenlive/effects/frei0r_kovalune.xml"}));
    const LoadedFile installed((folder / "lib/frei0r-1/kovalune.so").string());
    EXPECT_EQ(installed.init(), 1);
}

#ifndef KOVALUNE_SANITIZED

TEST(Frei0rFile, NeedsTheCLibraryAlone) {
    const std::set<std::string> needed = librariesNeededBy(kFile);
    EXPECT_EQ(needed.count("libc.so.6"), 1U);
    for (const std::string& library : needed) {
        EXPECT_TRUE(isOfTheCLibrary(library)) << library;
    }
}

/// Nothing in it could change the process's environment, signals or folder.
TEST(Frei0rFile, CannotChangeTheProcess) {
    const std::set<std::string> used = symbolsOf(kFile, "--undefined-only");
    for (const char* const name :
         {"setenv", "putenv", "unsetenv", "clearenv", "signal", "sigaction", "sigprocmask", "pthread_sigmask",
          "chdir", "fchdir", "umask", "setrlimit", "exit", "fork"}) {
        EXPECT_EQ(used.count(name), 0U) << name;
    }
    EXPECT_EQ(used.count("setlocale"), 1U); // around the effect's first call
}

#endif

} // namespace
} // namespace kovalune::test
