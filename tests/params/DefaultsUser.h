// A user with an empty folder for settings, for tests of the defaults file.
#pragma once

#include "effect/params/DefaultsFile.h"
#include "effect/params/DefaultsStore.h"
#include "tests/params/RegisteredTable.h"
#include "tests/platform/ScopedUser.h"
#include "tests/platform/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace kovalune::test {

/// A file of the folder `defaults` beside this one.
inline std::string expectedDefaults(const std::string& name) {
    const std::filesystem::path path = std::filesystem::path(KOVALUNE_DEFAULTS) / name;
    if (!std::filesystem::exists(path)) {
        throw std::runtime_error("no file " + path.string());
    }
    return contentOf(path);
}

class DefaultsUser : public testing::Test {
protected:
    DefaultsUser() { EXPECT_TRUE(makeDefaultsPath(path_)); }

    std::filesystem::path path() const { return path_; }
    std::filesystem::path product() const { return path().parent_path(); }
    std::filesystem::path maker() const { return product().parent_path(); }

    /// The registered parameters, from the file if one is there.
    bool save() {
        StubHost host;
        EXPECT_EQ(registerTable(host, path_), 0);
        return saveDefaults(host.paramArray(), path_);
    }
    void put(const std::string& content) {
        std::filesystem::create_directories(product());
        folder_.write("ORVEL/Tavik/Kovalune.ini", content);
    }

    const TemporaryFolder folder_;
    const ScopedSettings settings_{folder_.path()};
    char path_[kDefaultsPathBytes];
};

} // namespace kovalune::test
