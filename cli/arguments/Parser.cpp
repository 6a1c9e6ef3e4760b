#include "cli/arguments/Parser.h"

#include <CLI/CLI.hpp>

namespace kovalune::cli {

namespace {

/// As the parser's own complaint, so that it keeps on with what it has to say first.
void takeOrComplain(const TextTaker& take, const std::string& text) {
    try {
        take(text);
    } catch (const UsageMistake& mistake) {
        throw CLI::ValidationError(mistake.what());
    }
}

std::vector<std::string> longNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

} // namespace

OptionSyntax& OptionSyntax::required() {
    option_->required();
    return *this;
}

OptionSyntax& OptionSyntax::shownAs(const std::string& text) {
    option_->option_text(text);
    return *this;
}

OptionSyntax& OptionSyntax::checkedBy(const TextTaker& check) {
    option_->check([check](const std::string& text) {
        takeOrComplain(check, text);
        return std::string(); // consent
    });
    return *this;
}

OptionSyntax& OptionSyntax::needs(const OptionSyntax& other) {
    option_->needs(other.option_);
    return *this;
}

void CommandSyntax::describe(const std::string& text) {
    command_->description(text);
}

void CommandSyntax::addFooter(const std::string& text) {
    command_->footer(text);
}

OptionSyntax CommandSyntax::addFlag(const std::string& names, bool& value, const std::string& what) {
    return OptionSyntax(command_->add_flag(names, value, what));
}

OptionSyntax CommandSyntax::addAction(const std::string& names, const std::function<void()>& act,
                                      const std::string& what) {
    const auto acted = [act](int64_t) { takeOrComplain([&act](const std::string&) { act(); }, {}); };
    return OptionSyntax(command_->add_flag_function(names, acted, what));
}

OptionSyntax CommandSyntax::addText(const std::string& names, std::string& value, const std::string& what) {
    return OptionSyntax(command_->add_option(names, value, what));
}

OptionSyntax CommandSyntax::addText(const std::string& names, std::optional<std::string>& value,
                                    const std::string& what) {
    return OptionSyntax(command_->add_option(names, value, what));
}

OptionSyntax CommandSyntax::addTexts(const std::string& names, std::vector<std::string>& values,
                                     const std::string& what) {
    return OptionSyntax(command_->add_option(names, values, what)->allow_extra_args(false));
}

OptionSyntax CommandSyntax::addPlaces(const std::string& names, std::vector<std::string>& values,
                                      const std::string& what) {
    return OptionSyntax(command_->add_option(names, values, what));
}

OptionSyntax CommandSyntax::addTaker(const std::string& names, const TextTaker& take,
                                     const std::string& what) {
    const auto taken = [take](const std::string& text) { takeOrComplain(take, text); };
    return OptionSyntax(command_->add_option_function<std::string>(names, taken, what));
}

OptionSyntax CommandSyntax::addTakers(const std::string& names, const TextTaker& take,
                                      const std::string& what) {
    const auto taken = [take](const std::vector<std::string>& texts) {
        for (const std::string& text : texts) {
            takeOrComplain(take, text);
        }
    };
    return OptionSyntax(command_->add_option_function<std::vector<std::string>>(names, taken, what));
}

std::string CommandSyntax::name() const {
    return command_->get_name();
}

bool CommandSyntax::isUsed() const {
    return command_->parsed();
}

std::vector<std::string> CommandSyntax::optionNames() const {
    return longNames(*command_);
}

std::vector<std::string> CommandSyntax::shortNames() const {
    std::vector<std::string> names;
    for (const CLI::Option* option : std::as_const(*command_).get_options()) {
        for (const std::string& letter : option->get_snames()) {
            names.push_back('-' + letter);
        }
    }
    return names;
}

std::optional<std::size_t> CommandSyntax::timesGiven(const std::string& option) const {
    const CLI::Option* const known = std::as_const(*command_).get_option_no_throw(option);
    return known == nullptr ? std::nullopt : std::optional(known->count());
}

Parser::Parser(const Words& words)
    : program_(words.program), app_(std::make_unique<CLI::App>(words.description, words.program)) {
    app_->set_version_flag("--version", words.versionLine, "Print the version and exit");
    app_->require_subcommand(1);
    app_->footer(words.footer);
}

Parser::~Parser() = default;

CommandSyntax Parser::addCommand(const std::string& name) {
    return CommandSyntax(app_->add_subcommand(name));
}

ParseResult Parser::parse(int count, const char* const* words, const std::function<void()>& then) {
    try {
        app_->parse(count, words);
        then();
        return {};
    } catch (const CLI::CallForHelp&) {
        return {ParseEnd::kHelp, app_->help()};
    } catch (const CLI::CallForVersion& version) {
        return {ParseEnd::kVersion, std::string(version.what()) + '\n'};
    } catch (const CLI::ArgumentMismatch& error) {
        return {ParseEnd::kWrongCount, error.what()};
    } catch (const CLI::ConversionError& error) {
        return {ParseEnd::kWrongFlag, error.what()};
    } catch (const CLI::ParseError& error) {
        return {ParseEnd::kWrong, error.what()};
    } catch (const UsageMistake& mistake) {
        return {ParseEnd::kWrong, mistake.what()};
    }
}

std::vector<std::string> Parser::commandNames() const {
    std::vector<std::string> names;
    for (const CLI::App* command : app_->get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
    }
    return names;
}

std::vector<std::string> Parser::optionNames() const {
    return longNames(*app_);
}

std::optional<CommandSyntax> Parser::usedCommand() const {
    const std::vector<CLI::App*> used = app_->get_subcommands();
    return used.empty() ? std::nullopt : std::optional(CommandSyntax(used.front()));
}

std::vector<std::string> Parser::unknownWords() const {
    return app_->remaining(true);
}

std::optional<std::string> Parser::help(const std::string& command) const {
    const auto isMeant = [&command](const CLI::App* each) { return each->get_name() == command; };
    const std::vector<CLI::App*> meant = app_->get_subcommands(isMeant);
    if (!command.empty() && meant.empty()) {
        return std::nullopt;
    }
    return app_->get_formatter()->make_help(command.empty() ? app_.get() : meant.front(),
                                            command.empty() ? program_ : program_ + ' ' + command,
                                            CLI::AppFormatMode::Normal);
}

} // namespace kovalune::cli
