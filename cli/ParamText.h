// Parameter values as text, by the definition that the effect registered: what --set takes and what the
// table of parameters shows. Numbers have a decimal point in every locale.
#pragma once

#include "host/Session.h"

#include <string>
#include <string_view>
#include <vector>

namespace kovalune {

// The value that `text` stands for. `choices` are those of a popup, as Session::choices gives them. Throws
// Failure with the parameter's label, the text and what would be right if the text has the wrong form, is
// outside the valid range, or is a choice that cannot be made.
host::ParamValue parseValue(const PF_ParamDef& def, const std::vector<std::string>& choices,
                            std::string_view text);

// In a form that parseValue takes.
std::string valueText(const PF_ParamDef& def, const std::vector<std::string>& choices,
                      const host::ParamValue& value);

// "number", "whole number", "check box", "colour" or "popup".
std::string kindText(const PF_ParamDef& def);

// "0 to 1000", the choices of a popup that can be made, and so on.
std::string rangeText(const PF_ParamDef& def, const std::vector<std::string>& choices);

} // namespace kovalune
