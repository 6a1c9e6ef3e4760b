#include "cli/UsageFailure.h"

#include "cli/Failure.h"
#include "cli/NearestNames.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace kovalune {

namespace {

constexpr char kUsageHint[] = "; 'kovalune --help' shows the usage";

std::vector<std::string> commandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(command->get_name());
    return names;
}

// The names that a word on the command line may have.
std::vector<std::string> optionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    }
    return names;
}

std::string suggestion(const std::string& word, const std::vector<std::string>& names) {
    const std::vector<std::string> near = nearestNames(word, names, 1);
    return near.empty() ? "" : "; did you mean " + inQuotes(near.front()) + "?";
}

[[noreturn]] void failWith(const std::string& text, const std::string& hint) {
    throw Failure(ExitCode::Usage, text + (hint.empty() ? kUsageHint : hint));
}

} // namespace

void failUsage(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> unknown = app.remaining(true);
    const auto option = std::find_if(unknown.begin(), unknown.end(), [](const std::string& word) {
        return word.size() > 1 && word.front() == '-' && word != "--";
    });
    const std::vector<CLI::App*> used = app.get_subcommands();
    if (used.empty() && !unknown.empty()) {
        std::vector<std::string> names = commandNames(app);
        for (const std::string& name : optionNames(app))
            names.push_back(name);
        failWith("there is no command or option " + inQuotes(unknown.front()),
                 suggestion(unknown.front(), names));
    }
    if (!used.empty() && option != unknown.end()) {
        const std::string name = option->substr(0, option->find('='));
        failWith("'kovalune " + used.front()->get_name() + "' has no option " + inQuotes(name),
                 suggestion(name, optionNames(*used.front())));
    }
    std::string text = error.what();
    std::replace(text.begin(), text.end(), '\n', ' ');
    failWith(text, {});
}

} // namespace kovalune
