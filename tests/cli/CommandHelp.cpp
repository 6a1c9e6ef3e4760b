#include "tests/cli/CommandHelp.h"
#include "tests/cli/CommandProcess.h"

#include <algorithm>
#include <regex>
#include <sstream>

namespace kovalune::test {

std::vector<std::string> subCommands() {
    return {"colors", "compare", "defaults",  "help",  "info",   "params",
            "pick",   "render",  "selfcheck", "sheet", "smooth", "suggest"};
}

std::vector<std::string> optionsOf(const std::string& subCommand) {
    std::vector<std::string> words;
    if (!subCommand.empty()) {
        words.push_back(subCommand);
    }
    words.emplace_back("--help");
    const std::string help = runCommand(words).out;
    static const std::regex line(R"((?:^|\n)  (-[^ \n]*))");
    std::vector<std::string> options;
    for (std::sregex_iterator match(help.begin(), help.end(), line), end; match != end; ++match) {
        std::istringstream names((*match)[1].str());
        for (std::string name; std::getline(names, name, ',');) {
            options.push_back(name);
        }
    }
    std::sort(options.begin(), options.end());
    return options;
}

} // namespace kovalune::test
