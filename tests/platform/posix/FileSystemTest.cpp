// Rights, links and paths as only POSIX systems have them.

#include "effect/platform/Platform.h"
#include "effect/platform/posix/File.h"
#include "tests/platform/TemporaryFolder.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <utility>

namespace kovalune::test {
using namespace platform;
namespace {

namespace fs = std::filesystem;

TEST(PosixFileDescriptor, ClosesOnceAndTellsWhatTheSystemSays) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    FileDescriptor file = openForReading(folder.file("file").c_str());
    EXPECT_TRUE(file.isOpen());
    EXPECT_TRUE(file.close());
    EXPECT_FALSE(file.isOpen());
    EXPECT_TRUE(file.close()); // nothing is lost by what is not open
    EXPECT_FALSE(FileDescriptor(1 << 20).close());
}

TEST(PosixCreateFolders, AreForTheOwnerAlone) {
    const TemporaryFolder folder;
    EXPECT_TRUE(createFolders(folder.file("a//b/").c_str()));
    for (const char* name : {"a", "a/b"}) {
        EXPECT_EQ(fs::status(folder.file(name)).permissions() &
                      (fs::perms::group_all | fs::perms::others_all),
                  fs::perms::none);
    }
    EXPECT_TRUE(createFolders("/"));
}

TEST(PosixCreateFolders, TakesALinkToAFolderForOne) {
    const TemporaryFolder folder;
    fs::create_directory(folder.file("real"));
    fs::create_symlink("real", folder.file("link"));
    fs::create_symlink("nowhere", folder.file("broken"));
    EXPECT_TRUE(createFolders(folder.file("link/below").c_str()));
    EXPECT_TRUE(fs::is_directory(folder.file("real/below")));
    EXPECT_FALSE(createFolders(folder.file("broken").c_str()));
    EXPECT_FALSE(fs::exists(folder.file("nowhere")));
}

TEST(PosixCreateFolders, StartFromTheCurrentFolderWhereThePathDoes) {
    const TemporaryFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    EXPECT_TRUE(createFolders("a/b/c"));
    fs::current_path(before);
    EXPECT_TRUE(fs::is_directory(folder.file("a/b/c")));
}

TEST(PosixCreateFolders, SayWhyByTheSystemsNumber) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    const std::pair<std::string, int> refusals[] = {{"", ENOENT},
                                                    {folder.file(std::string(300, 'x')), ENAMETOOLONG},
                                                    {folder.file("file"), ENOTDIR},
                                                    {folder.file("file/below"), ENOTDIR}};
    for (const auto& [path, reason] : refusals) {
        errno = 0;
        EXPECT_FALSE(createFolders(path.c_str())) << path;
        EXPECT_EQ(errno, reason) << path;
    }
}

TEST(PosixDeleteFile, TakesALinkAndNotWhatItLeadsTo) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    fs::create_directory(folder.file("real"));
    fs::create_symlink("file", folder.file("link"));
    fs::create_symlink("real", folder.file("folder-link"));
    EXPECT_EQ(deleteFile(folder.file("link").c_str()), Deletion::kDone);
    EXPECT_EQ(contentOf(folder.file("file")), "x");
    EXPECT_FALSE(removeFolder(folder.file("folder-link").c_str()));
    EXPECT_EQ(deleteFile(folder.file("folder-link").c_str()), Deletion::kDone);
    EXPECT_TRUE(fs::is_directory(folder.file("real")));
}

} // namespace
} // namespace kovalune::test
