#include "effect/share/AEUtil/AEException.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace AEUtil {
namespace {

TEST(ErrorName, NamesEveryCodeOfTheTable) {
    EXPECT_STREQ(errorName(0), "PF_Err_NONE");
    EXPECT_STREQ(errorName(4), "PF_Err_OUT_OF_MEMORY");
    EXPECT_STREQ(errorName(512), "PF_Err_INTERNAL_STRUCT_DAMAGED");
    EXPECT_STREQ(errorName(513), "PF_Err_INVALID_INDEX");
    EXPECT_STREQ(errorName(514), "PF_Err_UNRECOGNIZED_PARAM_TYPE");
    EXPECT_STREQ(errorName(515), "PF_Err_INVALID_CALLBACK");
    EXPECT_STREQ(errorName(516), "PF_Err_BAD_CALLBACK_PARAM");
    EXPECT_STREQ(errorName(517), "PF_Interrupt_CANCEL");
    EXPECT_STREQ(errorName(518), "PF_Err_CANNOT_PARSE_KEYFRAME_TEXT");
}

TEST(ErrorName, HasEmptyRowsFromOneToThree) {
    for (const PF_Err code : {1, 2, 3}) {
        EXPECT_STREQ(errorName(code), "") << code;
    }
}

TEST(ErrorName, CallsEveryOtherCodeUnknown) {
    for (PF_Err code = 5; code <= 511; ++code) {
        EXPECT_STREQ(errorName(code), "unknown") << code;
    }
    for (const PF_Err code : {-1, -2, -512, 519, 520, 1 << 20, std::numeric_limits<PF_Err>::min(),
                              std::numeric_limits<PF_Err>::max()}) {
        EXPECT_STREQ(errorName(code), "unknown") << code;
    }
}

TEST(AEException, StartsWithThePlaceInTheSource) {
    const AEException exception(4, 45, "folder\\File", "size %d of %s", 12, "it");
    EXPECT_EQ(exception.code(), 4);
    EXPECT_STREQ(exception.what(), "folder\\File(45): size 12 of it");
}

TEST(AEException, IsAStandardException) {
    try {
        throw AEException(517, 1, "f", "m");
    } catch (const std::exception& exception) {
        EXPECT_STREQ(exception.what(), "f(1): m");
    }
}

TEST(AEException, CutsEachPieceToItsOwnBuffer) {
    const std::string file(3000, 'f');
    const std::string message(3000, 'm');
    const AEException exception(4, 45, file.c_str(), "%s", message.c_str());
    EXPECT_EQ(std::string(exception.what()), std::string(2047, 'f') + std::string(2047, 'm'));
}

TEST(AEException, KeepsWhatJustFits) {
    const std::string file(2047 - 6, 'f'); // "(45): " takes six
    const std::string message(2047, 'm');
    const AEException exception(4, 45, file.c_str(), "%s", message.c_str());
    EXPECT_EQ(std::string(exception.what()), file + "(45): " + message);
}

TEST(AEException, OwnsItsText) {
    std::string message = "before";
    const AEException exception(4, 1, "f", "%s", message.c_str());
    const AEException copy = exception;
    message = "behind";
    EXPECT_STREQ(copy.what(), "f(1): before");
}

TEST(Win32Exception, HasTheSameTextAndNoCode) {
    const Win32Exception exception(9, "File", "%s %d", "handle", 7);
    const std::exception& standard = exception;
    EXPECT_STREQ(standard.what(), "File(9): handle 7");
}

TEST(Win32Exception, CutsEachPieceToItsOwnBuffer) {
    const std::string file(3000, 'f');
    const std::string message(3000, 'm');
    const Win32Exception exception(45, file.c_str(), "%s", message.c_str());
    EXPECT_EQ(std::string(exception.what()), std::string(2047, 'f') + std::string(2047, 'm'));
}

} // namespace
} // namespace AEUtil
