// What a finished library gives to others and what it needs.
#pragma once

#include "tests/architecture/ProgramOutput.h"

#include <set>
#include <string>

namespace kovalune::test {

/// The dynamic symbols that `which`, an option of nm, asks for, without their versions.
inline std::set<std::string> symbolsOf(const std::string& file, const std::string& which) {
    std::set<std::string> names;
    for (const std::string& line : outputLines("nm -D " + which + " '" + file + "'")) {
        const std::string name = line.substr(line.find_last_of(' ') + 1);
        names.insert(name.substr(0, name.find('@')));
    }
    return names;
}

/// By the names that the loader looks for.
inline std::set<std::string> librariesNeededBy(const std::string& file) {
    std::set<std::string> libraries;
    for (const std::string& line : outputLines("readelf -dW '" + file + "'")) {
        if (line.find("(NEEDED)") != std::string::npos) {
            const std::size_t open = line.find('[');
            libraries.insert(line.substr(open + 1, line.find(']') - open - 1));
        }
    }
    return libraries;
}

} // namespace kovalune::test
