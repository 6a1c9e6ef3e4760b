#include "cli/arguments/Arguments.h"

#include "cli/arguments/CommandSyntaxes.h"
#include "cli/arguments/OptionKinds.h"
#include "cli/arguments/Parser.h"
#include "cli/arguments/UsageFailure.h"
#include "text/Failure.h"

#include <functional>

namespace kovalune::cli {

namespace {

constexpr char kProgram[] = "kovalune";
constexpr char kVersionLine[] = "kovalune " KOVALUNE_VERSION;
constexpr char kExitCodes[] =
    "Example:\n"
    "  kovalune render drawing.png -o soft.png --set \"Blur Amount=12\"\n"
    "\n"
    "Exit codes: 0 done, 1 pictures differ, or frames are missing, or nothing is found, 2 wrong usage, 3 a "
    "file, 4 the effect.\n"
    "A signal ends the command as any other, leaving nothing half-written; shells count that as 130 for "
    "Ctrl-C\n"
    "(INT), 143 for TERM, 129 for HUP, 131 for QUIT.";

/// Every command with its record, in the order of the help.
class CommandLine {
public:
    CommandLine() {
        add<RenderArguments>("render", addRender);
        add<SheetArguments>("sheet", addSheet);
        add<SmoothArguments>("smooth", addSmooth);
        add<ColorsArguments>("colors", addColors);
        add<SuggestArguments>("suggest", addSuggest);
        add<PickArguments>("pick", addPick);
        add<CompareArguments>("compare", addCompare);
        add<ParamsArguments>("params", addParams);
        add<DefaultsArguments>("defaults", addDefaults);
        add<InfoArguments>("info", addInfo);
        add<SelfCheckArguments>("selfcheck", addSelfCheck);
        addHelp();
    }

    Arguments parse(int count, const char* const* words) {
        checkQuotes({words, static_cast<std::size_t>(count)});
        std::optional<Arguments> arguments;
        const ParseResult result = parser_.parse(count, words, [&] { arguments = takenArguments(); });
        if (result.end == ParseEnd::kHelp || result.end == ParseEnd::kVersion) {
            return ShownText{result.text};
        }
        if (result.end != ParseEnd::kDone) {
            failUsage(parser_, result);
        }
        if (!arguments) {
            throw text::Failure(text::FailureKind::kUsage,
                                "a subcommand is required; 'kovalune --help' shows the usage");
        }
        return *arguments;
    }

private:
    template <class Record>
    void add(const std::string& name, void (*addOptions)(CommandSyntax&, Record&)) {
        CommandSyntax command = parser_.addCommand(name);
        const auto record = std::make_shared<Record>();
        addOptions(command, *record);
        commands_.emplace_back(command, [record] {
            if constexpr (requires { checkTogether(*record); }) {
                checkTogether(*record);
            }
            return Arguments(*record);
        });
    }

    void addHelp() {
        help_ = parser_.addCommand("help");
        help_->describe("Show what --help behind a command shows");
        help_->addText("COMMAND", topic_, "The command; without one, all commands are listed").shownAs(" ");
        help_->addFooter(example("help render"));
    }

    // Of the command that the words name, if any.
    std::optional<Arguments> takenArguments() {
        if (help_->isUsed()) {
            const std::optional<std::string> text = parser_.help(topic_);
            if (!text) {
                failUnknownCommand(parser_, topic_);
            }
            return ShownText{*text};
        }
        for (const auto& [command, arguments] : commands_) {
            if (command.isUsed()) {
                return arguments();
            }
        }
        return std::nullopt;
    }

    Parser parser_{{kProgram, "Softens flat-colour drawings region by region, each inside itself.",
                    kVersionLine, kExitCodes}};
    std::vector<std::pair<CommandSyntax, std::function<Arguments()>>> commands_;
    std::optional<CommandSyntax> help_;
    std::string topic_; // of it
};

} // namespace

Arguments parseArguments(int count, const char* const* words) {
    return CommandLine().parse(count, words);
}

} // namespace kovalune::cli
