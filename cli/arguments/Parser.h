// The words of a command line by a table of commands and their options. Parser.cpp alone knows the library that parses
// them, whose headers take long to compile.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace kovalune::cli {

/// What is wrong with the words. Is thrown where they are looked at and told once all of them are parsed, unless the
/// parser has more to say.
class UsageMistake : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Gets a value of the command line; throws UsageMistake for a wrong one.
using TextTaker = std::function<void(const std::string& text)>;

/// An option or a place of a command, which its parser owns.
class OptionSyntax {
public:
    explicit OptionSyntax(CLI::Option* option) : option_(option) {}

    OptionSyntax& required();
    /// In the help, after the name.
    OptionSyntax& shownAs(const std::string& text);
    OptionSyntax& checkedBy(const TextTaker& check);
    OptionSyntax& needs(const OptionSyntax& other);

private:
    CLI::Option* option_;
};

/// A command, which its parser owns. Names are those of an option ("-o,--output") or of a place ("INPUT"); what is to be
/// set must live until the words are parsed.
class CommandSyntax {
public:
    explicit CommandSyntax(CLI::App* command) : command_(command) {}

    void describe(const std::string& text);
    void addFooter(const std::string& text);
    OptionSyntax addFlag(const std::string& names, bool& value, const std::string& what);
    /// A flag that does something where it stands; may throw UsageMistake.
    OptionSyntax addAction(const std::string& names, const std::function<void()>& act,
                           const std::string& what);
    OptionSyntax addText(const std::string& names, std::string& value, const std::string& what);
    OptionSyntax addText(const std::string& names, std::optional<std::string>& value,
                         const std::string& what);
    /// One that may be given several times, with one value each time.
    OptionSyntax addTexts(const std::string& names, std::vector<std::string>& values,
                          const std::string& what);
    /// A place for one word or more.
    OptionSyntax addPlaces(const std::string& names, std::vector<std::string>& values,
                           const std::string& what);
    OptionSyntax addTaker(const std::string& names, const TextTaker& take, const std::string& what);
    /// The same for a place of several words, each of which is taken.
    OptionSyntax addTakers(const std::string& names, const TextTaker& take, const std::string& what);

    std::string name() const;
    bool isUsed() const;
    /// The long ones, as "--output".
    std::vector<std::string> optionNames() const;
    /// The short ones, as "-o".
    std::vector<std::string> shortNames() const;
    /// How often the words have an option of this name; none where there is no such option.
    std::optional<std::size_t> timesGiven(const std::string& option) const;

private:
    CLI::App* command_;
};

enum class ParseEnd {
    kDone,
    kHelp,       ///< the text is to be shown
    kVersion,    ///< likewise
    kWrongCount, ///< an option has too many values or none; the text begins with its name and a colon
    kWrongFlag,  ///< an option without a value was given one; the text names it
    kWrong,      ///< the text says why
};

struct ParseResult {
    ParseEnd end = ParseEnd::kDone;
    std::string text;
};

class Parser {
public:
    struct Words {
        std::string program;
        std::string description;
        std::string versionLine;
        std::string footer;
    };

    explicit Parser(const Words& words);
    ~Parser();
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    CommandSyntax addCommand(const std::string& name);

    /// Sets what the words say and calls `then`, which may throw UsageMistake.
    ParseResult parse(int count, const char* const* words, const std::function<void()>& then);

    std::vector<std::string> commandNames() const;
    /// As "--version", those of no command.
    std::vector<std::string> optionNames() const;
    std::optional<CommandSyntax> usedCommand() const;
    /// Words that were parsed as nothing.
    std::vector<std::string> unknownWords() const;
    /// Of all commands or, with a name, of that one; nothing where there is none of it.
    std::optional<std::string> help(const std::string& command) const;

private:
    const std::string program_;
    std::unique_ptr<CLI::App> app_;
};

} // namespace kovalune::cli
