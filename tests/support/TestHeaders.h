// The headers that test programs share in compiled form; see cmake/KovaluneTests.cmake. No header of the project stands
// here, so that a change of one compiles again only what includes it. Files still include what they use themselves.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
