// How a fuzz target says that something is not so: a message, and the end of the process.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace kovalune::test {

inline void require(bool holds, const char* what, const std::string& found = {}) {
    if (!holds) {
        std::fprintf(stderr, "fuzz: not so: %s %s\n", what, found.c_str());
        std::abort();
    }
}

} // namespace kovalune::test
