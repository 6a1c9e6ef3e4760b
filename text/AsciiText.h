// Text work on ASCII letters alone: the same in every locale. Other bytes are compared as they are.
#pragma once

#include <string>
#include <string_view>

namespace kovalune::text {

std::string foldedCase(std::string_view text);

bool equalWithoutCase(std::string_view a, std::string_view b);

/// Without the blanks and tabs at both ends.
std::string_view trimmed(std::string_view text);

} // namespace kovalune::text
