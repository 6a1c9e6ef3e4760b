#include "effect/frame/texts/Language.h"

#include "effect/platform/Ascii.h"
#include "effect/platform/Platform.h"

namespace kovalune {
namespace {

constexpr uint32_t kJapaneseCode = 0x4A50; // "JP"

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// One pass over the text. `at` gives 0 at the text's end, which ends a word as a blank does.
class CommandLineParser {
public:
    explicit CommandLineParser(std::string_view text) : text_(text) {}

    CommandLineOptions parse() {
        bool afterBlank = false;
        for (position_ = 0; at(position_) != '\0'; ++position_) {
            if (at(position_) == '-' && afterBlank) {
                option();
            }
            const char current = at(position_);
            afterBlank = isBlank(current) || current == '\0';
            if (current == '\0') {
                break;
            }
        }
        return options_;
    }

private:
    char at(std::size_t position) const { return position < text_.size() ? text_[position] : '\0'; }

    /// Leaves the position at the last character that belongs to the option, or at the blank that ended it.
    void option() {
        const char name = platform::upperAscii(at(position_ + 1));
        if (name == 'L') {
            ++position_;
            language();
        } else if (name == 'R') {
            ++position_;
            if (platform::upperAscii(at(position_ + 1)) == 'E') {
                ++position_;
                options_.renderEngine = true;
            }
        }
    }

    void language() {
        ++position_;
        while (isBlank(at(position_))) {
            ++position_;
        }
        options_.languageCode = 0;
        for (; at(position_) != '\0' && !isBlank(at(position_)); ++position_) {
            const auto letter = static_cast<unsigned char>(platform::upperAscii(at(position_)));
            options_.languageCode = options_.languageCode << 8 | letter;
        }
    }

    std::string_view text_;
    std::size_t position_ = 0;
    CommandLineOptions options_;
};

} // namespace

CommandLineOptions parseCommandLine(std::string_view text) {
    return CommandLineParser(text).parse();
}

LanguageChoice chooseLanguage(uint32_t languageCode, unsigned codePage) {
    if (languageCode != 0) {
        return languageCode == kJapaneseCode ? LanguageChoice::kJapanese : LanguageChoice::kEnglish;
    }
    return languageOfCodePage(codePage);
}

LanguageChoice currentLanguage() {
    static const CommandLineOptions options = parseCommandLine(platform::commandLine());
    return chooseLanguage(options.languageCode, platform::activeCodePage());
}

} // namespace kovalune
