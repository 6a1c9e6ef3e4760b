// Random numbers that are the same on every platform.
#pragma once

#include "render/selfcheck/Random.h"

namespace kovalune::test {

using selfcheck::Random;

} // namespace kovalune::test
