// The picture of the Option dialog, as the build draws it.

#include "effect/resources/DialogPicture.h"
#include "tests/windows/PeFile.h"

#include <gtest/gtest.h>

#include <set>

namespace kovalune::test {
namespace {

TEST(DialogPicture, IsABitmapOfItsSize) {
    const std::vector<uint8_t> picture = dialogPicture();
    ASSERT_EQ(picture.size(), 71280U);
    EXPECT_EQ(word32(picture, 0), 40U);
    EXPECT_EQ(word32(picture, 4), static_cast<uint32_t>(kDialogPictureWidth));
    EXPECT_EQ(word32(picture, 8), static_cast<uint32_t>(kDialogPictureHeight));
    EXPECT_EQ(word16(picture, 12), 1U);
    EXPECT_EQ(word16(picture, 14), 24U);
    EXPECT_EQ(word32(picture, 16), 0U);
    EXPECT_EQ(word32(picture, 20), picture.size() - 40);
}

TEST(DialogPicture, ShowsSomething) {
    const std::vector<uint8_t> picture = dialogPicture();
    std::set<uint32_t> colors;
    const std::size_t row = (picture.size() - 40) / kDialogPictureHeight;
    for (std::size_t y = 0; y < kDialogPictureHeight; ++y) {
        for (std::size_t x = 0; x < kDialogPictureWidth; ++x) {
            colors.insert(word32(picture, 40 + y * row + 3 * x - 1) >> 8);
        }
    }
    EXPECT_GT(colors.size(), 100U);
}

TEST(DialogPicture, AsAFileHasTheFilesHeaderBeforeIt) {
    const std::vector<uint8_t> picture = dialogPicture();
    const std::vector<uint8_t> file = dialogPictureFile();
    ASSERT_EQ(file.size(), picture.size() + 14);
    EXPECT_EQ(file[0], 'B');
    EXPECT_EQ(file[1], 'M');
    EXPECT_EQ(word32(file, 2), file.size());
    EXPECT_EQ(word32(file, 10), 54U);
    EXPECT_TRUE(std::equal(picture.begin(), picture.end(), file.begin() + 14));
}

} // namespace
} // namespace kovalune::test
