// This program once more, as a process of its own.
#pragma once

#include <string>
#include <vector>

namespace kovalune::test {

/// Waits for its end. The arguments stand in its command line as they are, after the name "test"; the environment is this
/// process's. Its exit code, or -1 if it ended in another way.
int runThisProgramAgain(const std::vector<std::string>& arguments);

} // namespace kovalune::test
