// The texts that the Option dialog gets while it opens.
#pragma once

#include <cstdint>

namespace FxOptionDlg {

inline constexpr int32_t kLanguageByCodePage = 0;
inline constexpr int32_t kLanguageJapanese = 1;
inline constexpr int32_t kLanguageEnglish = 2;

/// The text of a row in a language; empty for an unknown row or language. In the code page that the system's narrow
/// texts have: 932 on Windows, UTF-8 elsewhere.
const char* dialogText(int32_t row, int32_t language);

} // namespace FxOptionDlg
