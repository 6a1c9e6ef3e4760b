// The dialog's language where nobody has chosen one.

#include "effect/params/FxOptionDlg/DialogText.h"
#include "tests/platform/posix/ScopedVariable.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

using FxOptionDlg::dialogText;

TEST(DialogLanguage, IsThatOfTheCodePageWhereNoneIsChosen) {
    for (const auto& [locale, language] :
         {std::pair("ja_JP.UTF-8", 1), {"en_US.UTF-8", 2}, {"de_DE.UTF-8", 2}, {"C", 2}}) {
        const platform::ScopedVariable all("LC_ALL", locale);
        for (const int32_t row : {0, 1, 2}) {
            EXPECT_STREQ(dialogText(row, 0), dialogText(row, language)) << locale;
        }
        EXPECT_STREQ(dialogText(0, 2), "Settings (Valid from next start-up)");
    }
}

} // namespace
} // namespace kovalune::test
