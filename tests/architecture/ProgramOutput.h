// What a program of the system says of a file.
#pragma once

#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace kovalune::test {

/// The lines on standard output. Throws where the program cannot be run.
inline std::vector<std::string> outputLines(const std::string& command) {
    struct Close {
        void operator()(std::FILE* pipe) const { pclose(pipe); }
    };
    const std::unique_ptr<std::FILE, Close> pipe(popen(command.c_str(), "r"));
    if (!pipe) {
        throw std::runtime_error("cannot run " + command);
    }
    std::string text;
    char buffer[4096];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe.get())) {
        text.append(buffer, count);
    }
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace kovalune::test
