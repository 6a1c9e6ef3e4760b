#include "effect/params/DefaultsFile.h"
#include "tests/platform/ScopedUser.h"
#include "tests/platform/TemporaryFolder.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace kovalune::test {
namespace {

TEST(DefaultsPath, LiesInTheUsersSettings) {
    const TemporaryFolder folder;
    const ScopedSettings settings(folder.path());
    char path[kDefaultsPathBytes];
    EXPECT_TRUE(makeDefaultsPath(path));
    EXPECT_EQ(path, folder.file("ORVEL/Tavik/Kovalune.ini"));
}

TEST(DefaultsPath, FitsItsBufferOrIsEmpty) {
    const TemporaryFolder folder;
    const std::size_t tail = std::strlen("/ORVEL/Tavik/Kovalune.ini");
    for (const std::size_t bytes : {200U, 258U, 259U, 260U, 261U, 284U}) {
        const std::string place = folder.fileOfLength(bytes - tail);
        std::filesystem::create_directories(place);
        const ScopedSettings settings(place);
        char path[kDefaultsPathBytes];
        std::memset(path, 'z', sizeof path);
        EXPECT_EQ(makeDefaultsPath(path), bytes < 260) << bytes;
        std::string whole(path, sizeof path);
        whole.resize(whole.find_last_not_of('\0') + 1);
        EXPECT_EQ(whole.size(), bytes < 260 ? bytes : 0) << bytes;
        EXPECT_TRUE(whole.empty() || whole.starts_with(place));
    }
}

TEST(DefaultsPath, IsBuiltWithoutItsFolders) {
    const TemporaryFolder folder;
    const ScopedSettings settings(folder.file("to come"));
    char path[kDefaultsPathBytes];
    EXPECT_TRUE(makeDefaultsPath(path));
    EXPECT_EQ(path, folder.file("to come/ORVEL/Tavik/Kovalune.ini"));
    EXPECT_EQ(folder.entries(), 0);
}

#ifndef _WIN32
/// It need not be there; Windows knows none that is longer than its own paths.
TEST(DefaultsPath, IsEmptyForAFolderOfAnyLength) {
    for (const std::size_t bytes : {260U, 300U, 5000U, 32767U}) {
        std::string folder(bytes, 'x');
        folder.front() = '/';
        const ScopedSettings settings(folder);
        char path[kDefaultsPathBytes];
        std::memset(path, 'z', sizeof path);
        EXPECT_FALSE(makeDefaultsPath(path));
        EXPECT_STREQ(path, "");
    }
}
#endif

} // namespace
} // namespace kovalune::test
