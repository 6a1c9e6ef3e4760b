#include "effect/platform/Platform.h"
#include "tests/platform/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kovalune::test {
using namespace platform;
namespace {

constexpr std::size_t kRoom = 100;

TEST(ProfileInt, ReadsAValue) {
    const TemporaryFolder folder;
    const std::string file = folder.write("p.ini", "[s]\r\na= -12x\r\nb=word\r\nc=\r\nd=4294967295\r\n");
    EXPECT_EQ(profileInt("s", "a", 5, file.c_str()), -12);
    EXPECT_EQ(profileInt("s", "b", 5, file.c_str()), 0);
    EXPECT_EQ(profileInt("s", "d", 5, file.c_str()), -1);
}

TEST(ProfileInt, GivesTheFallbackWithoutAValue) {
    const TemporaryFolder folder;
    const std::string file = folder.write("p.ini", "[s]\r\nempty=\r\nblank= \t\r\n");
    EXPECT_EQ(profileInt("s", "empty", 5, file.c_str()), 5);
    EXPECT_EQ(profileInt("s", "blank", 5, file.c_str()), 5);
    EXPECT_EQ(profileInt("s", "missing", 5, file.c_str()), 5);
    EXPECT_EQ(profileInt("t", "empty", 5, file.c_str()), 5);
    EXPECT_EQ(profileInt("s", "empty", -7, folder.file("missing").c_str()), -7);
    EXPECT_EQ(profileInt(nullptr, "empty", 5, file.c_str()), 5);
    EXPECT_EQ(profileInt("s", nullptr, 5, file.c_str()), 5);
    EXPECT_EQ(profileInt("s", "empty", 5, nullptr), 5);
}

TEST(ProfileString, ReadsAValueWithoutItsQuotes) {
    const TemporaryFolder folder;
    const std::string file = folder.write("p.ini", "[s]\na= x y \nb=\" q \"\nc=\n");
    EXPECT_EQ(profileString("s", "a", "f", kRoom, file.c_str()), "x y");
    EXPECT_EQ(profileString("s", "b", "f", kRoom, file.c_str()), " q ");
    EXPECT_EQ(profileString("s", "c", "f", kRoom, file.c_str()), "");
}

TEST(ProfileString, GivesTheFallbackWithoutTrailingBlanks) {
    const TemporaryFolder folder;
    const std::string file = folder.write("p.ini", "[s]\na=1\n");
    EXPECT_EQ(profileString("s", "b", " f g  ", kRoom, file.c_str()), " f g");
    EXPECT_EQ(profileString("t", "a", "   ", kRoom, file.c_str()), "");
    EXPECT_EQ(profileString("s", "b", nullptr, kRoom, file.c_str()), "");
    EXPECT_EQ(profileString("s", "a", "f", kRoom, folder.file("missing").c_str()), "f");
    EXPECT_EQ(profileString(nullptr, "a", "f", kRoom, file.c_str()), "f");
    EXPECT_EQ(profileString("s", nullptr, "f", kRoom, file.c_str()), "f");
    EXPECT_EQ(profileString("s", "a", "f", kRoom, nullptr), "f");
}

TEST(ProfileString, HoldsWhatABufferOfThatSizeWould) {
    const TemporaryFolder folder;
    const std::string file = folder.write("p.ini", std::string("[s]\na=\"abcd\"\nb=ab\0cd\n", 22));
    EXPECT_EQ(profileString("s", "a", "", 5, file.c_str()), "abcd");
    EXPECT_EQ(profileString("s", "a", "", 4, file.c_str()), "abc");
    EXPECT_EQ(profileString("s", "a", "", 1, file.c_str()), "");
    EXPECT_EQ(profileString("s", "a", "", 0, file.c_str()), "");
    EXPECT_EQ(profileString("s", "x", "fallback", 5, file.c_str()), "fall");
    EXPECT_EQ(profileString("s", "b", "", kRoom, file.c_str()), "ab");
}

TEST(ProfileRead, TakesWhatIsNoPlainFileForAnEmptyOne) {
    const TemporaryFolder folder;
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : {folder.path(), pipe, std::string("/dev/zero"), std::string()}) {
        EXPECT_EQ(profileInt("s", "a", 5, path.c_str()), 5) << path;
        EXPECT_EQ(profileString("s", "a", "f", kRoom, path.c_str()), "f") << path;
        EXPECT_FALSE(writeProfileString("s", "a", "1", path.c_str())) << path;
    }
    EXPECT_EQ(folder.entries(), 1);
}

TEST(ProfileRead, TakesAnUnreadableFileForAnEmptyOne) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "the superuser reads every file";
    }
    const TemporaryFolder folder;
    const std::string file = folder.write("p.ini", "[s]\na=1\n");
    ASSERT_EQ(::chmod(file.c_str(), 0200), 0);
    EXPECT_EQ(profileInt("s", "a", 5, file.c_str()), 5);
    EXPECT_FALSE(writeProfileString("s", "b", "1", file.c_str()));
    ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    EXPECT_EQ(contentOf(file), "[s]\na=1\n");
}

TEST(ProfileRead, TakesAFileThatCannotBeReadForNone) {
    // This one opens, and no read at its start succeeds.
    if (::access("/proc/self/mem", R_OK) != 0) {
        GTEST_SKIP() << "the system has no such file";
    }
    EXPECT_EQ(profileInt("s", "a", 5, "/proc/self/mem"), 5);
    EXPECT_FALSE(writeProfileString("s", "a", "1", "/proc/self/mem"));
}

TEST(ProfileRead, StopsAtTheSizeLimit) {
    const TemporaryFolder folder;
    EXPECT_EQ(kProfileSizeLimit, 1048576U); // as the users' documents say
    const std::string head = "[s]\na=1\n;";
    const std::string tail = "\nb=23";
    const std::string fits = head + std::string(kProfileSizeLimit - head.size() - tail.size(), 'x') + tail;
    ASSERT_EQ(fits.size(), kProfileSizeLimit);
    const std::string exact = folder.write("exact.ini", fits);
    EXPECT_EQ(profileInt("s", "b", 5, exact.c_str()), 23);

    const std::string over = folder.write("over.ini", fits + "4\nc=6\n");
    EXPECT_EQ(profileInt("s", "a", 5, over.c_str()), 1);
    EXPECT_EQ(profileInt("s", "b", 5, over.c_str()), 23);
    EXPECT_EQ(profileInt("s", "c", 5, over.c_str()), 5);
}

TEST(ProfileRead, ReadsTheStartOfAHugeFile) {
    const TemporaryFolder folder;
    const std::string file = folder.write("huge.ini", "[s]\na=1\n");
    ASSERT_EQ(::truncate(file.c_str(), 400L << 20), 0);
    EXPECT_EQ(profileInt("s", "a", 5, file.c_str()), 1);
    EXPECT_EQ(profileInt("s", "b", 5, file.c_str()), 5);
    EXPECT_FALSE(writeProfileString("s", "a", "2", file.c_str()));
    EXPECT_EQ(profileInt("s", "a", 5, file.c_str()), 1);
}

TEST(ProfileWrite, CreatesAFileAndReadsBack) {
    const TemporaryFolder folder;
    const std::string file = folder.file("new.ini");
    EXPECT_TRUE(writeProfileString("s", "a", "-3", file.c_str()));
    EXPECT_TRUE(writeProfileString("s", "b", "text", file.c_str()));
    EXPECT_EQ(contentOf(file), "[s]\r\na=-3\r\nb=text\r\n");
    EXPECT_EQ(profileInt("s", "a", 5, file.c_str()), -3);
    EXPECT_EQ(profileString("s", "b", "", kRoom, file.c_str()), "text");
    EXPECT_EQ(folder.entries(), 1);
}

TEST(ProfileWrite, GivesANewFileTheUsualPermissions) {
    const TemporaryFolder folder;
    const mode_t old = ::umask(027);
    EXPECT_TRUE(writeProfileString("s", "a", "1", folder.file("new.ini").c_str()));
    ::umask(old);
    struct stat status {};
    ASSERT_EQ(::stat(folder.file("new.ini").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST(ProfileWrite, KeepsThePermissionsAndReplacesTheFile) {
    const TemporaryFolder folder;
    const std::string file = folder.write("p.ini", "[s]\na=1\n");
    ASSERT_EQ(::chmod(file.c_str(), 0622), 0);
    // The reader that has the old file open goes on seeing the old text.
    std::ifstream reader(file, std::ios::binary);
    EXPECT_TRUE(writeProfileString("s", "a", "2", file.c_str()));
    std::string line;
    std::getline(reader, line);
    std::getline(reader, line);
    EXPECT_EQ(line, "a=1");
    EXPECT_EQ(contentOf(file), "[s]\na=2\n");
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0622U);
    EXPECT_EQ(folder.entries(), 1);
}

TEST(ProfileWrite, FollowsALinkToTheFile) {
    const TemporaryFolder folder;
    const std::string file = folder.write("real.ini", "[s]\na=1\n");
    const std::string link = folder.file("link.ini");
    ASSERT_EQ(::symlink("real.ini", link.c_str()), 0);
    EXPECT_TRUE(writeProfileString("s", "a", "2", link.c_str()));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(contentOf(file), "[s]\na=2\n");
}

TEST(ProfileWrite, DeletesAKeyOrASection) {
    const TemporaryFolder folder;
    const std::string file = folder.write("p.ini", "[s]\na=1\nb=2\n[t]\nc=3\n");
    EXPECT_TRUE(writeProfileString("s", "a", nullptr, file.c_str()));
    EXPECT_EQ(contentOf(file), "[s]\nb=2\n[t]\nc=3\n");
    EXPECT_TRUE(writeProfileString("s", nullptr, "ignored", file.c_str()));
    EXPECT_EQ(contentOf(file), "[t]\nc=3\n");
    EXPECT_TRUE(writeProfileString("t", nullptr, nullptr, file.c_str()));
    EXPECT_EQ(contentOf(file), "");
}

TEST(ProfileWrite, LeavesAFileAloneThatAlreadySaysSo) {
    const TemporaryFolder folder;
    const std::string file = folder.write("p.ini", "[s]\na=1\n");
    struct stat before {};
    ASSERT_EQ(::stat(file.c_str(), &before), 0);
    EXPECT_TRUE(writeProfileString("s", "a", "1", file.c_str()));
    EXPECT_TRUE(writeProfileString("s", "b", nullptr, file.c_str()));
    struct stat after {};
    ASSERT_EQ(::stat(file.c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_TRUE(writeProfileString("s", "a", nullptr, folder.file("missing.ini").c_str()));
    EXPECT_EQ(folder.entries(), 1);
}

TEST(ProfileWrite, FailsWithoutItsFolder) {
    const TemporaryFolder folder;
    EXPECT_FALSE(writeProfileString("s", "a", "1", folder.file("none/p.ini").c_str()));
    EXPECT_FALSE(writeProfileString("s", "a", nullptr, folder.file("none/p.ini").c_str()));
    EXPECT_FALSE(writeProfileString("s", "a", "1", folder.file("none/").c_str()));
    EXPECT_EQ(folder.entries(), 0);
    const std::string file = folder.write("p.ini", "");
    EXPECT_FALSE(writeProfileString("s", "a", "1", (file + "/q.ini").c_str()));
}

TEST(ProfileWrite, FailsForAFileOrAFolderThatIsWriteProtected) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "the superuser writes every file";
    }
    const TemporaryFolder folder;
    const std::string file = folder.write("p.ini", "[s]\na=1\n");
    ASSERT_EQ(::chmod(file.c_str(), 0400), 0);
    EXPECT_FALSE(writeProfileString("s", "a", "2", file.c_str()));
    ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0500), 0);
    EXPECT_FALSE(writeProfileString("s", "a", "2", file.c_str()));
    ASSERT_EQ(::chmod(folder.path().c_str(), 0700), 0);
    EXPECT_EQ(contentOf(file), "[s]\na=1\n");
    EXPECT_EQ(folder.entries(), 1);
}

TEST(ProfileWrite, FailsForWhatCannotStandInAProfile) {
    const TemporaryFolder folder;
    const std::string file = folder.write("p.ini", "[s]\na=1\n");
    EXPECT_FALSE(writeProfileString("s", "a", "1\r\n[t]", file.c_str()));
    EXPECT_FALSE(writeProfileString("s", "a=b", "1", file.c_str()));
    EXPECT_FALSE(writeProfileString("s]", "a", "1", file.c_str()));
    EXPECT_FALSE(writeProfileString(nullptr, "a", "1", file.c_str()));
    EXPECT_FALSE(writeProfileString("s", "a", "1", nullptr));
    EXPECT_EQ(contentOf(file), "[s]\na=1\n");
}

TEST(ProfileWrite, RefusesAFileAboveTheSizeLimit) {
    const TemporaryFolder folder;
    const std::string head = "[s]\na=1\n;";
    const std::string large = head + std::string(kProfileSizeLimit + 1 - head.size(), 'x');
    const std::string file = folder.write("large.ini", large);
    EXPECT_FALSE(writeProfileString("s", "a", "2", file.c_str()));
    EXPECT_FALSE(writeProfileString("s", nullptr, nullptr, file.c_str()));
    EXPECT_TRUE(contentOf(file) == large);

    const std::string full = large.substr(0, kProfileSizeLimit);
    folder.write("large.ini", full);
    EXPECT_FALSE(writeProfileString("s", "a", "22", file.c_str()));
    EXPECT_TRUE(contentOf(file) == full);
    EXPECT_TRUE(writeProfileString("s", "a", "2", file.c_str()));
    EXPECT_EQ(profileInt("s", "a", 5, file.c_str()), 2);
    EXPECT_EQ(folder.entries(), 1);
}

TEST(ProfileWrite, PassesOverTemporaryNamesThatAreTaken) {
    const TemporaryFolder folder;
    const std::string file = folder.file("p.ini");
    // Which numbers come next depends on the tests that ran before; these cover them.
    const std::string stem = ".profile-" + std::to_string(::getpid()) + "-";
    for (int i = 0; i < 60; ++i) {
        folder.write(stem + std::to_string(i) + ".tmp", "another's");
    }
    EXPECT_TRUE(writeProfileString("s", "a", "1", file.c_str()));
    EXPECT_EQ(contentOf(file), "[s]\r\na=1\r\n");
    EXPECT_EQ(contentOf(folder.file(stem + "59.tmp")), "another's");
    EXPECT_EQ(folder.entries(), 61);
}

TEST(ProfileWrite, TakesAPathWithoutAFolderFromTheWorkingOne) {
    const TemporaryFolder folder;
    const std::filesystem::path old = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_TRUE(writeProfileString("s", "a", nullptr, "p.ini"));
    EXPECT_TRUE(writeProfileString("s", "a", "1", "p.ini"));
    EXPECT_TRUE(writeProfileString("s", "a", "2", "p.ini"));
    std::filesystem::current_path(old);
    EXPECT_EQ(contentOf(folder.file("p.ini")), "[s]\r\na=2\r\n");
}

} // namespace
} // namespace kovalune::test
