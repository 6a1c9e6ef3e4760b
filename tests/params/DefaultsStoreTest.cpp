// Remembering and forgetting: what is in the file, and what becomes of its folders.

#include "effect/params/DefaultsStore.h"
#include "effect/params/DefaultsFile.h"
#include "tests/params/ExpectedTable.h"
#include "tests/params/RegisteredTable.h"
#include "tests/platform/posix/ScopedVariable.h"
#include "tests/platform/posix/TemporaryFolder.h"

#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace kovalune::test {
namespace {

using platform::contentOf;
using platform::Deletion;
using platform::ScopedVariable;
using platform::TemporaryFolder;
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

/// A user with an empty folder for settings.
class DefaultsStore : public testing::Test {
protected:
    DefaultsStore() { EXPECT_TRUE(makeDefaultsPath(path_)); }

    fs::path path() const { return path_; }
    fs::path product() const { return path().parent_path(); }
    fs::path maker() const { return product().parent_path(); }

    /// The registered parameters, from the file if one is there.
    bool save() {
        StubHost host;
        EXPECT_EQ(registerTable(host, path_), 0);
        return saveDefaults(host.paramArray(), path_);
    }
    void put(const std::string& content) {
        fs::create_directories(product());
        folder_.write("ORVEL/Tavik/Kovalune.ini", content);
    }

    const TemporaryFolder folder_;
    const ScopedVariable settings_{"XDG_CONFIG_HOME", folder_.path().c_str()};
    char path_[kDefaultsPathBytes];
};

/// The file of a user who remembers the table's own defaults, written down key by key.
std::string fileOfTableDefaults() {
    const std::string color = "3\r\n@.g=180\r\n@.b=245\r\n@.a=255\r\n";
    const auto colorKeys = [&color](const std::string& label) {
        std::string text = label + ".r=" + color;
        for (std::size_t at; (at = text.find('@')) != std::string::npos;) {
            text.replace(at, 1, label);
        }
        return text;
    };
    std::string text = "[Version=1.0]\r\nView=1\r\n"
                       "Blur Amount=10.000000\r\nBlur Repeat Num=5\r\nKeep Division=1\r\n";
    for (const char n : {'1', '2', '3', '4'}) {
        const std::string label = std::string("Color ") + n;
        text += std::string("Enable ") + n + (n == '1' ? "=1\r\n" : "=0\r\n") + colorKeys(label) + label +
                " Range=0.000000\r\n";
    }
    for (const char n : {'1', '2', '3', '4'}) {
        const std::string stage = std::string(1, n) + " : ";
        text += stage + "Enable Process=" + (n == '1' ? "1" : "0") + "\r\n" + colorKeys(stage + "Color") +
                stage + "Color Range=0.000000\r\n" + stage + "Boundary Blur=10.000000\r\n" + stage +
                "Blur Repeat Num=5\r\n" + stage + "Boundary Bias=0.000000\r\n" + stage +
                "Keep Division=1\r\n" + (n == '1' ? "" : stage + "Keep Process=1\r\n");
    }
    return text;
}

TEST_F(DefaultsStore, WritesEveryKeyInTheTablesOrder) {
    EXPECT_TRUE(makeDefaultsFolder(path_));
    EXPECT_TRUE(save());
    EXPECT_EQ(contentOf(path_), fileOfTableDefaults());
}

TEST_F(DefaultsStore, WritesTheSameFileOverAnEmptyOne) {
    put("");
    EXPECT_TRUE(save());
    EXPECT_EQ(contentOf(path_), fileOfTableDefaults());
}

TEST_F(DefaultsStore, KeepsWhatIsNotItsOwn) {
    const std::string others = "\xEF\xBB\xBF; mine\r\n[Version=0.9]\r\nView=7\r\n";
    put(others);
    EXPECT_TRUE(save());
    EXPECT_EQ(contentOf(path_), others + fileOfTableDefaults());
}

TEST_F(DefaultsStore, WritesBehindABinaryFile) {
    std::string bytes;
    for (int i = 0; i < 4096; ++i) {
        bytes += static_cast<char>(i * 37 % 251);
    }
    put(bytes);
    EXPECT_TRUE(save());
    EXPECT_TRUE(contentOf(path_).starts_with(bytes));
    EXPECT_TRUE(contentOf(path_).ends_with(fileOfTableDefaults()));
}

TEST_F(DefaultsStore, LeavesAFileAloneThatIsTooLarge) {
    const std::string huge(std::size_t{1} << 20, 'x');
    put(huge);
    EXPECT_FALSE(save());
    EXPECT_TRUE(contentOf(path_) == huge);
}

TEST_F(DefaultsStore, FailsWithAFolderInTheFilesPlace) {
    fs::create_directories(path());
    EXPECT_FALSE(save());
    EXPECT_TRUE(fs::is_directory(path()));
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kFailed);
    EXPECT_TRUE(fs::is_directory(path()));
}

TEST_F(DefaultsStore, FailsWithoutItsFolder) {
    EXPECT_FALSE(save());
    EXPECT_EQ(folder_.entries(), 0);
}

TEST_F(DefaultsStore, FailsForAReadOnlyFileOrFolder) {
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

TEST_F(DefaultsStore, FailsForThePathThatDidNotFit) {
    EXPECT_FALSE(makeDefaultsFolder(""));
    StubHost host;
    ASSERT_EQ(registerTable(host, nullptr), 0);
    EXPECT_FALSE(saveDefaults(host.paramArray(), ""));
    EXPECT_EQ(removeDefaultsFile(""), Deletion::kMissing);
    EXPECT_TRUE(fs::is_directory(folder_.path()));
}

TEST_F(DefaultsStore, MakesAllFoldersThatAreMissing) {
    const ScopedVariable deeper("XDG_CONFIG_HOME", folder_.file("a/b").c_str());
    ASSERT_TRUE(makeDefaultsPath(path_));
    EXPECT_TRUE(makeDefaultsFolder(path_));
    EXPECT_TRUE(fs::is_directory(folder_.file("a/b/ORVEL/Tavik")));
    EXPECT_TRUE(makeDefaultsFolder(path_));
}

TEST_F(DefaultsStore, CannotMakeAFolderInAFilesPlace) {
    folder_.write("ORVEL", "a file");
    EXPECT_FALSE(makeDefaultsFolder(path_));
    EXPECT_EQ(contentOf(folder_.file("ORVEL")), "a file");
}

TEST_F(DefaultsStore, ForgetsTheFileAndItsEmptyFolders) {
    put("[Version=1.0]\r\nView=3\r\n[Version=9.0]\r\n");
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kDone);
    EXPECT_FALSE(fs::exists(maker()));
    EXPECT_TRUE(fs::is_directory(folder_.path()));
}

TEST_F(DefaultsStore, KeepsAFolderThatSomethingElseLiesIn) {
    put("");
    fs::create_directories(maker() / "Other");
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kDone);
    EXPECT_FALSE(fs::exists(product()));
    EXPECT_TRUE(fs::is_directory(maker() / "Other"));

    put("");
    folder_.write("ORVEL/Tavik/other.ini", "x");
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kDone);
    EXPECT_FALSE(fs::exists(path()));
    EXPECT_EQ(contentOf(product() / "other.ini"), "x");
}

TEST_F(DefaultsStore, RemovesEmptyFoldersWithoutAFileToo) {
    fs::create_directories(product());
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kMissing);
    EXPECT_FALSE(fs::exists(maker()));
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kMissing);
    EXPECT_TRUE(fs::is_directory(folder_.path()));
}

/// The folder for settings is empty itself then, and stays all the same.
TEST_F(DefaultsStore, StopsAtTheFolderForSettingsInAnyCase) {
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

TEST_F(DefaultsStore, DeletesALinkAndNotWhatItLeadsTo) {
    const std::string target = folder_.write("elsewhere.ini", "kept");
    fs::create_directories(product());
    fs::create_symlink(target, path());
    EXPECT_EQ(removeDefaultsFile(path_), Deletion::kDone);
    EXPECT_EQ(contentOf(target), "kept");
}

TEST_F(DefaultsStore, KnowsWhichKeysAreRemembered) {
    put("[Version=1.0]\r\nView=0\r\nEnable 1=1\r\nColor 1.g=1\r\nempty=\r\n[Version=2.0]\r\nEnable 2=1\r\n");
    builtTable().setSectionName("Version=1.0");
    for (const char* key : {"View", "Enable 1", "Color 1.g", "empty"}) {
        EXPECT_TRUE(isRemembered(key, path_)) << key;
    }
    for (const char* key : {"Enable 2", "Color 1.r", "Color 1", "Blur Amount"}) {
        EXPECT_FALSE(isRemembered(key, path_)) << key;
    }
    EXPECT_FALSE(isRemembered("View", "/nowhere/at/all.ini"));
}

} // namespace
} // namespace kovalune::test
