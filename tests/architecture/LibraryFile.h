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

/// Parts of the C library: up to glibc 2.33 threads, loading and clocks are files of their own, and the loader is there for
/// what belongs to a thread.
inline bool isOfTheCLibrary(const std::string& library) {
    static const std::set<std::string> parts = {"libc.so.6",  "libm.so.6",  "libpthread.so.0",
                                                "libdl.so.2", "librt.so.1", "ld-linux-x86-64.so.2"};
    return parts.count(library) == 1;
}

} // namespace kovalune::test
