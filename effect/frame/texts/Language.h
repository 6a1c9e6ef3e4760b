// In which language the effect shows its texts: the host process's command line decides, else the code page.
#pragma once

#include "effect/share/Language.h"

#include <cstdint>
#include <string_view>

namespace kovalune {

/// The options of the host process's command line that concern the effect.
struct CommandLineOptions {
    uint32_t languageCode = 0; ///< last four letters of the `-L` option, upper case; 0 if none
    bool renderEngine = false; ///< frozen: `-RE` was given; nothing reads it
};

/// An option starts at a dash after a blank or a tab. Quotes do not protect: an option inside quotes counts.
CommandLineOptions parseCommandLine(std::string_view text);

/// The letters `JP` are Japanese, any others English; without letters the code page decides.
LanguageChoice chooseLanguage(uint32_t languageCode, unsigned codePage);

/// The process's language. Its command line is parsed once.
LanguageChoice currentLanguage();

} // namespace kovalune
