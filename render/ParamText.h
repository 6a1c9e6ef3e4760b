// Parameter values as text, by the definition that the effect registered: what --set takes and what the
// table of parameters shows. Numbers have a decimal point in every locale.
#pragma once

#include "host/ParamValue.h"
#include "hostapi/HostApi.h"

#include <string>
#include <string_view>
#include <vector>

namespace kovalune::render {

inline constexpr std::string_view kViewLabel = "View";

/// The value that `text` stands for. `choices` are those of a popup, as Session::choices gives them. Throws
/// Failure with the parameter's label, the text and what would be right if the text has the wrong form, is
/// outside the valid range, or is a choice that cannot be made.
host::ParamValue parseValue(const PF_ParamDef& def, const std::vector<std::string>& choices,
                            std::string_view text);

/// The values of a popup that parseValue takes.
std::vector<A_long> choosable(const PF_ParamDef& def, const std::vector<std::string>& choices);

/// Why a popup must not have this value; empty if it may, and for other parameters. A remembered default can be
/// one that parseValue would refuse.
std::string choiceRefusal(const PF_ParamDef& def, const std::vector<std::string>& choices,
                          const host::ParamValue& value);

/// In a form that parseValue takes, unless choiceRefusal has a reason against it.
std::string valueText(const PF_ParamDef& def, const std::vector<std::string>& choices,
                      const host::ParamValue& value);

/// "number", "whole number", "check box", "colour" or "popup"; empty for what has no value.
std::string kindText(const PF_ParamDef& def);

/// "0 to 1000", the choices of a popup that can be made, and so on.
std::string rangeText(const PF_ParamDef& def, const std::vector<std::string>& choices);

} // namespace kovalune::render
