// Paths of 259 bytes, the most that Windows' older calls have room for, and of more: what is done is done to that very
// path, and otherwise nothing at all is touched, least of all what lies under a cut one.

#include "effect/platform/Platform.h"
#include "tests/platform/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <vector>

namespace kovalune::test {
using namespace platform;
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kAlwaysFits = 240;
constexpr std::size_t kLengths[] = {259, 260, 261, 300, 1000, 5000, 32767, 100000};
#ifdef _WIN32
constexpr std::size_t kLongestThatMustFit = 259;
constexpr std::size_t kLongestFolderThatMustFit = 247; // a file's name of eight and three has to fit after it
#else
constexpr std::size_t kLongestThatMustFit = 300;
constexpr std::size_t kLongestFolderThatMustFit = 300;
#endif
constexpr char kText[] = "[s]\r\na=1\r\n";

/// A folder full of what a cut path would meet: files and folders whose names begin like that of any longer path.
class LongPath : public testing::TestWithParam<std::size_t> {
protected:
    LongPath() {
        fs::create_directories(base_);
        for (const std::size_t length : {247U, 248U, 255U, 256U, 259U}) {
            if (length < GetParam()) {
                decoys_.push_back(folder_.fileOfLength(kAlwaysFits) + kPathSeparator +
                                  std::string(length - kAlwaysFits - 1, 'n'));
                std::ofstream(decoys_.back(), std::ios::binary) << kText;
            }
        }
        before_ = folder_.allEntries();
    }
    ~LongPath() override {
        EXPECT_EQ(folder_.allEntries(), before_);
        for (const std::string& decoy : decoys_) {
            EXPECT_EQ(contentOf(decoy), kText) << decoy.size();
        }
    }

    /// As long as the parameter says: one name below the folder, or one for every fifty bytes.
    std::string oneName() const {
        return base_ + kPathSeparator + std::string(GetParam() - kAlwaysFits - 1, 'n');
    }
    std::string manyNames() const {
        std::string path = base_;
        while (path.size() < GetParam()) {
            const std::size_t left = GetParam() - path.size() - 1;
            path += kPathSeparator + std::string(left == 51 ? 49 : std::min<std::size_t>(left, 50), 'n');
        }
        return path;
    }

    const TemporaryFolder folder_;
    const std::string base_ = folder_.fileOfLength(kAlwaysFits);
    std::vector<std::string> decoys_;
    std::ptrdiff_t before_ = 0;
};

TEST_P(LongPath, OfAMissingFileReadsAsAnEmptyOne) {
    for (const std::string& path : {oneName(), manyNames()}) {
        ASSERT_EQ(path.size(), GetParam());
        // The last file that was read is not taken for this one.
        ASSERT_EQ(profileInt("s", "a", 5, decoys_.empty() ? path.c_str() : decoys_.back().c_str()),
                  decoys_.empty() ? 5 : 1);
        EXPECT_EQ(profileInt("s", "a", 5, path.c_str()), 5);
        EXPECT_EQ(profileString("s", "a", "other", 128, path.c_str()), "other");
    }
}

TEST_P(LongPath, OfAProfileIsWrittenOrNothingIs) {
    const std::string path = oneName();
    if (!decoys_.empty()) {
        ASSERT_TRUE(writeProfileString("s", "a", "1", decoys_.back().c_str()));
    }
    const bool written = writeProfileString("s", "a", "2", path.c_str());
    if (written) {
        EXPECT_EQ(contentOf(path), "[s]\r\na=2\r\n");
        EXPECT_EQ(profileInt("s", "a", 5, path.c_str()), 2);
        EXPECT_EQ(deleteFile(path.c_str()), Deletion::kDone);
    }
    EXPECT_TRUE(written || GetParam() > kLongestThatMustFit);
    EXPECT_EQ(profileInt("s", "a", 5, path.c_str()), 5);
}

TEST_P(LongPath, WithoutItsFolderIsNoProfile) {
    if (GetParam() > kAlwaysFits + 52) {
        EXPECT_FALSE(writeProfileString("s", "a", "2", manyNames().c_str()));
        EXPECT_FALSE(writeProfileString("s", "a", nullptr, manyNames().c_str()));
    }
    EXPECT_FALSE(writeProfileString("s", "a", "2", (oneName() + kPathSeparator + "p.ini").c_str()));
}

TEST_P(LongPath, IsMadeAsAFolderOrNothingIs) {
    for (const std::string& path : {oneName(), manyNames()}) {
        if (createFolders(path.c_str())) {
            EXPECT_TRUE(fs::is_directory(path));
            fs::remove_all(fs::path(path.substr(0, path.find(kPathSeparator, kAlwaysFits + 1))));
        } else {
            EXPECT_GT(path.size(), kLongestFolderThatMustFit);
        }
        EXPECT_EQ(folder_.allEntries(), before_) << path.size();
    }
}

TEST_P(LongPath, IsNotDeletedWhereItIsNotThere) {
    for (const std::string& path : {oneName(), manyNames()}) {
        EXPECT_NE(deleteFile(path.c_str()), Deletion::kDone);
        EXPECT_FALSE(removeFolder(path.c_str()));
    }
}

INSTANTIATE_TEST_SUITE_P(Bytes, LongPath, testing::ValuesIn(kLengths), testing::PrintToStringParamName());

} // namespace
} // namespace kovalune::test
