// Remembering and forgetting where it depends on what POSIX systems have: rights, links, letters in both cases, and the
// limit of a file's size that is our own there.

#include "tests/params/DefaultsUser.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace kovalune::test {
namespace {

using platform::Deletion;
namespace fs = std::filesystem;

/// Nothing is read-only for root: such a process goes on as nobody, who gets the folder.
class OrdinaryUser {
public:
    explicit OrdinaryUser(const std::string& folder) {
        if (!wasRoot_) {
            return;
        }
        EXPECT_EQ(::chown(folder.c_str(), kNobody, kNobody), 0);
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            EXPECT_EQ(::chown(entry.path().c_str(), kNobody, kNobody), 0);
        }
        EXPECT_EQ(::seteuid(kNobody), 0);
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (wasRoot_) {
            EXPECT_EQ(::seteuid(0), 0);
        }
    }

private:
    static constexpr uid_t kNobody = 65534;
    const bool wasRoot_ = ::geteuid() == 0;
};

class PosixDefaultsStore : public DefaultsUser {};

TEST_F(PosixDefaultsStore, WritesBehindABinaryFile) {
    std::string bytes;
    for (int i = 0; i < 4096; ++i) {
        bytes += static_cast<char>(i * 37 % 251);
    }
    put(bytes);
    EXPECT_TRUE(save());
    EXPECT_TRUE(contentOf(path_).starts_with(bytes));
    EXPECT_TRUE(contentOf(path_).ends_with(expectedDefaults("table.ini")));
}

TEST_F(PosixDefaultsStore, LeavesAFileAloneThatIsTooLarge) {
    const std::string huge(std::size_t{1} << 20, 'x');
    put(huge);
    EXPECT_FALSE(save());
    EXPECT_TRUE(contentOf(path_) == huge);
}

TEST_F(PosixDefaultsStore, FailsForAReadOnlyFileOrFolder) {
    put("[Version=1.0]\r\nView=3\r\n");
    const OrdinaryUser user(folder_.path());
    fs::permissions(path(), fs::perms::owner_read);
    EXPECT_FALSE(save());
    fs::permissions(path(), fs::perms::owner_all);
    fs::permissions(product(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_FALSE(save());
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kFailed);
    EXPECT_EQ(contentOf(path_), "[Version=1.0]\r\nView=3\r\n");
    fs::permissions(product(), fs::perms::owner_all);
}

TEST_F(PosixDefaultsStore, MakesAllFoldersThatAreMissing) {
    const ScopedSettings deeper(folder_.file("a/b"));
    ASSERT_TRUE(makeDefaultsPath(path_));
    EXPECT_TRUE(makeDefaultsFolder(path_));
    EXPECT_TRUE(fs::is_directory(folder_.file("a/b/ORVEL/Tavik")));
    EXPECT_TRUE(makeDefaultsFolder(path_));
}

/// The folder for settings is empty itself then, and stays all the same.
TEST_F(PosixDefaultsStore, StopsAtTheFolderForSettingsInAnyCase) {
    put("");
    std::string shouted = path_;
    const std::size_t name = folder_.path().rfind('/') + 1;
    for (std::size_t i = name; i < folder_.path().size(); ++i) {
        shouted[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(shouted[i])));
    }
    const fs::path twin = shouted.substr(0, folder_.path().size());
    fs::create_directories(twin / "ORVEL" / "Tavik");
    EXPECT_EQ(removeDefaultsFile(shouted.c_str()), Deletion::kMissing);
    EXPECT_TRUE(fs::is_directory(twin));
    EXPECT_FALSE(fs::exists(twin / "ORVEL"));
    fs::remove_all(twin);
}

/// A path too long for the buffer stands for a folder that the system does not know.
TEST_F(PosixDefaultsStore, RemovesNoFolderButItsOwnTwoWhereTheSettingsFolderIsUnknown) {
    put("");
    const ScopedSettings unknown('/' + std::string(300, 'x'));
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kDone);
    EXPECT_FALSE(fs::exists(maker()));
    EXPECT_TRUE(fs::is_directory(folder_.path()));

    const std::string other = folder_.file("mine/Tavik/Kovalune.ini");
    fs::create_directories(folder_.file("mine/Tavik"));
    folder_.write("mine/Tavik/Kovalune.ini", "");
    EXPECT_EQ(removeDefaultsFile(other.c_str()), Deletion::kDone);
    EXPECT_TRUE(fs::is_directory(folder_.file("mine/Tavik"))) << "these are not our names";
}

TEST_F(PosixDefaultsStore, DeletesALinkAndNotWhatItLeadsTo) {
    const std::string target = folder_.write("elsewhere.ini", "kept");
    fs::create_directories(product());
    fs::create_symlink(target, path());
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kDone);
    EXPECT_EQ(contentOf(target), "kept");
}

} // namespace
} // namespace kovalune::test
