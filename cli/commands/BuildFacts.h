// What the command was built with, and the machine that it runs on.
#pragma once

#include "cli/text/InfoText.h"

namespace kovalune::cli {

BuildFacts buildFacts();

} // namespace kovalune::cli
