// The two languages that the effect's texts are in, and which of a text's two wordings is shown.
#pragma once

#include "effect/platform/Platform.h"

#include <cstdint>

namespace kovalune {

/// With the numbers that the Option dialog takes.
enum class LanguageChoice : int32_t { kByCodePage = 0, kJapanese = 1, kEnglish = 2 };

inline LanguageChoice languageOfCodePage(unsigned codePage) {
    return codePage == platform::kJapaneseCodePage ? LanguageChoice::kJapanese : LanguageChoice::kEnglish;
}

/// Each may be null: there is none. In the code page that the system's narrow texts have: 932 on Windows, UTF-8 elsewhere.
struct BilingualText {
    const char* japanese = nullptr;
    const char* english = nullptr;

    /// The Japanese wording for Japanese, or the English one where there is no other; the English one for English, where both
    /// exist. Else an empty text, as for an unknown language.
    const char* in(LanguageChoice language) const {
        const char* text = nullptr;
        switch (language) {
        case LanguageChoice::kByCodePage:
            return in(languageOfCodePage(platform::activeCodePage()));
        case LanguageChoice::kJapanese:
            text = japanese != nullptr ? japanese : english;
            break;
        case LanguageChoice::kEnglish:
            text = japanese != nullptr ? english : nullptr;
            break;
        }
        return text != nullptr ? text : "";
    }
};

} // namespace kovalune
