// The effect's vocabulary: the whole ordered list of its parameters. The persistent ids never change, since
// saved projects refer to them.
#pragma once

namespace kovalune {

/// Builds the table in the registry, once, on the first host call.
void buildParamTable();

} // namespace kovalune
