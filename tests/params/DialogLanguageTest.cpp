// The dialog's language where nobody has chosen one.

#include "effect/params/FxOptionDlg/DialogText.h"
#include "tests/platform/ScopedUser.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

using FxOptionDlg::dialogText;

TEST(DialogLanguage, IsThatOfTheCodePageWhereNoneIsChosen) {
    for (const auto& [user, language] : {std::pair(UserLanguage::kJapanese, LanguageChoice::kJapanese),
                                         {UserLanguage::kEnglish, LanguageChoice::kEnglish}}) {
        const ScopedLanguage ofTheUser(user);
        for (const int32_t row : {0, 1, 2}) {
            EXPECT_STREQ(dialogText(row, LanguageChoice::kByCodePage), dialogText(row, language));
        }
        EXPECT_STREQ(dialogText(0, LanguageChoice::kEnglish), "Settings (Valid from next start-up)");
    }
}

} // namespace
} // namespace kovalune::test
