// The texts that the Option dialog gets while it opens.
#pragma once

#include "effect/share/Language.h"

#include <cstdint>

namespace FxOptionDlg {

/// The text of a row in a language; empty for an unknown row or language.
const char* dialogText(int32_t row, kovalune::LanguageChoice language);

} // namespace FxOptionDlg
