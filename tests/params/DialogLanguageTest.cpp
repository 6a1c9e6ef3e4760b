// The dialog's language where nobody has chosen one.

#include "effect/params/FxOptionDlg/DialogText.h"
#include "tests/platform/ScopedUser.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

using FxOptionDlg::dialogText;

TEST(DialogLanguage, IsThatOfTheCodePageWhereNoneIsChosen) {
    for (const auto& [user, language] :
         {std::pair(platform::UserLanguage::kJapanese, 1), {platform::UserLanguage::kEnglish, 2}}) {
        const platform::ScopedLanguage ofTheUser(user);
        for (const int32_t row : {0, 1, 2}) {
            EXPECT_STREQ(dialogText(row, 0), dialogText(row, language)) << language;
        }
        EXPECT_STREQ(dialogText(0, 2), "Settings (Valid from next start-up)");
    }
}

} // namespace
} // namespace kovalune::test
