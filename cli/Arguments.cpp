#include "cli/Arguments.h"

#include "cli/AsciiText.h"
#include "cli/Failure.h"
#include "cli/SeveralPictures.h"
#include "cli/UsageFailure.h"
#include "cli/picture/PictureFile.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <functional>
#include <span>
#include <string_view>

namespace kovalune {

namespace {

constexpr char kProgram[] = "kovalune";
constexpr char kVersionLine[] = "kovalune " KOVALUNE_VERSION;
constexpr char kMayBeInput[] = "may be INPUT";
constexpr char kExitCodes[] =
    "Example:\n"
    "  kovalune render drawing.png -o soft.png --set \"Blur Amount=12\"\n"
    "\n"
    "Exit codes: 0 done, 1 compared pictures differ, 2 wrong usage, 3 a file, 4 the effect.\n"
    "A signal ends the command as any other, leaving nothing half-written; shells count that as 130 for "
    "Ctrl-C\n"
    "(INT), 143 for TERM, 129 for HUP, 131 for QUIT.";

/// A sub-command's footer.
std::string example(const std::string& line, const std::string& more = {}) {
    return "Example:\n  kovalune " + line + (more.empty() ? "" : "\n\n" + more);
}

/// For the parser an empty answer is consent.
using NameCheck = void (*)(const std::string& name, const std::string& command);

void checkName(CLI::App& command, CLI::Option& option, NameCheck check) {
    option.check([check, name = command.get_name()](const std::string& text) {
        check(text, name);
        return std::string();
    });
}

CLI::Option* addInput(CLI::App& command, std::string& input) {
    CLI::Option* const option = command.add_option("INPUT", input, "The picture to read: " + formatNames());
    checkName(command, *option, checkReadName);
    return option;
}

void addForce(CLI::App& command, bool& force) {
    command.add_flag("--force", force, "Replace a write-protected file too");
}

CLI::Option* addOutput(CLI::App& command, std::string& output, bool& force, const std::string& asInput) {
    CLI::Option* const option = command.add_option("-o,--output", output,
                                                   "The picture to write; its name's end (" +
                                                       usualNameEnds() + ") says the format; " + asInput);
    checkName(command, *option, checkWriteName);
    addForce(command, force);
    return option->option_text("FILE");
}

template <class Record>
void addRequiredFiles(CLI::App& command, Record& arguments, const std::string& asInput) {
    addInput(command, arguments.input)->required();
    addOutput(command, arguments.output, arguments.force, asInput)->required()->option_text("FILE REQUIRED");
}

/// Decimal digits with a sign before them at the most; the parser's own reading takes 010 for eight.
template <class Number>
bool readWhole(std::string_view text, Number& value) {
    const auto end = std::from_chars(text.data(), text.data() + text.size(), value);
    return end.ec == std::errc() && end.ptr == text.data() + text.size();
}

[[noreturn]] void refuse(const std::string& name, const std::string& takes, const std::string& text) {
    throw CLI::ValidationError(name + " takes " + takes + ", not " + inQuotes(text));
}

CLI::Option* addWhole(CLI::App& command, const std::string& name, int& value, int lowest, int highest,
                      const std::string& what) {
    const auto set = [name, &value, lowest, highest](const std::string& text) {
        int read = 0;
        if (!readWhole(text, read) || read < lowest || read > highest) {
            refuse(name, "a whole number, " + std::to_string(lowest) + " to " + std::to_string(highest),
                   text);
        }
        value = read;
    };
    return command.add_option_function<std::string>(name, set, what)->option_text("N");
}

void addPlugin(CLI::App& command, std::optional<std::string>& plugin) {
    command.add_option("--plugin", plugin, "Use the effect of this shared object")->option_text("FILE");
}

void addFactory(CLI::App& command, bool& factory) {
    command.add_flag("--factory", factory, "Start from the effect's own defaults, not the remembered ones");
}

/// Where the parameters' values come from.
void addSettings(CLI::App& command, EffectArguments& effect) {
    command
        .add_option(
            "--set", effect.settings,
            "Set a parameter; may be given again. Colours are #RRGGBB or r,g,b, check boxes on or off")
        ->allow_extra_args(false)
        ->option_text("LABEL=VALUE");
    command
        .add_option("--params", effect.paramsFile,
                    "Set the parameters of this file first, one LABEL=VALUE a line; implies --factory")
        ->check([](const std::string& text) {
            checkParamsName(text);
            return std::string();
        })
        ->option_text("FILE");
    addFactory(command, effect.factory);
}

void addEffect(CLI::App& command, EffectArguments& effect) {
    addSettings(command, effect);
    addWhole(command, "--threads", effect.threads, 1, kMostThreads,
             "Threads to work on, 1 to " + std::to_string(kMostThreads) + "; default: the machine's");
    addPlugin(command, effect.plugin);
}

template <class Value>
using Choices = std::vector<std::pair<std::string, Value>>;

/// "a, b or c"
template <class Value>
std::string wordsOf(const Choices<Value>& choices) {
    std::string words;
    for (std::size_t i = 0; i < choices.size(); ++i) {
        words += (i == 0 ? "" : i + 1 < choices.size() ? ", " : " or ") + choices[i].first;
    }
    return words;
}

/// One of a few words, without case.
template <class Value>
CLI::Option* addChoice(CLI::App& command, const std::string& name, Value& value,
                       const Choices<Value>& choices, const std::string& what) {
    const auto choose = [name, choices, &value](const std::string& text) {
        const auto choice = std::find_if(choices.begin(), choices.end(), [&text](const auto& known) {
            return equalWithoutCase(known.first, text);
        });
        if (choice == choices.end()) {
            refuse(name, wordsOf(choices), text);
        }
        value = choice->second;
    };
    return command.add_option_function<std::string>(name, choose, what);
}

void addAlpha(CLI::App& command, std::optional<AlphaKind>& alphaKind) {
    addChoice<std::optional<AlphaKind>>(
        command, "--alpha", alphaKind,
        {{"premultiplied", AlphaKind::kPremultiplied}, {"straight", AlphaKind::kStraight}},
        "Take the files' alpha as this, whatever they say: straight, premultiplied")
        ->option_text("KIND");
}

void addDepth(CLI::App& command, std::optional<int>& depth) {
    addChoice<std::optional<int>>(
        command, "--depth", depth, {{"8", 8}, {"16", 16}, {"32", 32}, {"auto", std::nullopt}},
        "Bits a channel to work in: 8, 16, 32 or auto (the file's); the written file has the nearest depth")
        ->option_text("N");
}

/// "N/D" with 1 <= N <= D.
Fraction parsedFraction(const std::string& text) {
    constexpr int32_t kMost = 32767;
    const std::size_t slash = text.find('/');
    Fraction fraction;
    if (slash == std::string::npos || !readWhole(text.substr(0, slash), fraction.numerator) ||
        !readWhole(text.substr(slash + 1), fraction.denominator) || fraction.numerator < 1 ||
        fraction.denominator < fraction.numerator || fraction.denominator > kMost) {
        refuse("--downsample", "N/D or N/D,N/D with 1 <= N <= D <= " + std::to_string(kMost), text);
    }
    return fraction;
}

void addFrame(CLI::App& command, FrameArguments& frame) {
    addDepth(command, frame.depth);
    command
        .add_option_function<std::string>(
            "--downsample",
            [&frame](const std::string& text) {
                const std::size_t comma = text.find(',');
                frame.downsample[0] = parsedFraction(text.substr(0, comma));
                frame.downsample[1] =
                    comma == std::string::npos ? frame.downsample[0] : parsedFraction(text.substr(comma + 1));
            },
            "The picture is a proxy of this factor (across,down); nothing is shrunk")
        ->option_text("N/D[,N/D]");
    command.add_flag("--legacy", frame.legacy, "Render by the host's older command, without pre-render");
    addAlpha(command, frame.alphaKind);
    command.add_flag("--quiet", frame.quiet, "No progress, and no word of remembered defaults");
}

void addReport(CLI::App& command, ReportArguments& report) {
    command.add_flag("--strict", report.strict, "Write nothing, exit code 4, if a setting selects nothing");
    CLI::Option* const table = command.add_flag(
        "--report", report.report,
        "Print the pixels that each stage selected and changed; the built-in effect alone counts them");
    command.add_flag("--json", report.json, "The report as JSON, for programs")->needs(table);
}

/// What the parser does not know of them.
void checkReport(const ReportArguments& report, const EffectArguments& effect) {
    if (report.strict && effect.plugin) {
        throw CLI::ValidationError("--strict",
                                   "needs the built-in effect, since the one of --plugin does not tell "
                                   "what it selects");
    }
}

void addView(CLI::App& command, std::optional<std::string>& view) {
    command.add_option("--view", view, "Choose the View; wins over --set View=...")->option_text("NAME");
}

void addRender(CLI::App& command, RenderArguments& arguments) {
    command.description("Put a picture through the effect");
    addInput(command, arguments.input);
    addOutput(command, arguments.output, arguments.force, kMayBeInput);
    addEffect(command, arguments.effect);
    addView(command, arguments.view);
    command.add_flag("--print-params", arguments.printParams,
                     "Print the parameters in use, as --params takes them; INPUT and output may be left out");
    addFrame(command, arguments.frame);
    addReport(command, arguments.report);
    command.add_flag("--time", arguments.time, "Print the milliseconds of reading, effect and writing");
    command.footer(
        example("render drawing.png -o soft.png --set \"Blur Amount=12\" --set \"Color 1=#F0C8A0\"",
                "'kovalune params' lists the labels and the values they take."));
}

/// The parser cannot know that --print-params makes the files optional.
void checkFiles(const RenderArguments& arguments) {
    const ReportArguments& report = arguments.report;
    checkReport(report, arguments.effect);
    if (report.json && (arguments.printParams || arguments.time)) {
        throw CLI::ValidationError("--json", "prints one document, so leave out --print-params and --time");
    }
    if (arguments.input.empty() && arguments.output.empty() && arguments.printParams && !report.report &&
        !report.strict) {
        return;
    }
    if (arguments.input.empty()) {
        throw CLI::RequiredError("INPUT");
    }
    if (arguments.output.empty()) {
        throw CLI::RequiredError("--output");
    }
}

void addSheet(CLI::App& command, SheetArguments& arguments) {
    command.description("Draw all views of a picture side by side with their names");
    addRequiredFiles(command, arguments, "may not be INPUT");
    addEffect(command, arguments.effect);
    addFrame(command, arguments.frame);
    addReport(command, arguments.report);
    command.footer(example("sheet drawing.png -o views.png --params jacket.txt"));
}

void addNumber(CLI::App& command, const std::string& name, int32_t& value, const IntRange& range,
               const std::string& what) {
    addWhole(command, name, value, range.lowest, range.highest,
             what + ", " + std::to_string(range.lowest) + " to " + std::to_string(range.highest) +
                 "; default " + std::to_string(value));
}

void addKey(CLI::App& command, SmoothArguments& arguments) {
    CLI::Option* const key =
        addChoice<SmoothKey>(command, "--key", arguments.options.key,
                             {{"only", SmoothKey::kOnly}, {"remove", SmoothKey::kRemove}},
                             "Leave out the key colour, or all but it: remove, only")
            ->option_text("USE");
    command
        .add_option("--key-color", arguments.keyColor, "The key colour, #RRGGBB or r,g,b; default #FFFFFF")
        ->needs(key)
        ->option_text("COLOR");
    addNumber(command, "--key-tolerance", arguments.options.keyTolerance, kKeyToleranceRange,
              "How far from the key colour still counts as it");
}

void addSmooth(CLI::App& command, SmoothArguments& arguments) {
    command.description("Turn stair-steps into ramps: the effect's anti-aliasing alone, on any picture");
    addRequiredFiles(command, arguments, kMayBeInput);
    addNumber(command, "--threshold", arguments.options.threshold, kThresholdRange,
              "Neighbours are apart where their channels' differences add up to more");
    addNumber(command, "--strength", arguments.options.strength, kStrengthRange,
              "Percentage that stretches every ramp");
    addNumber(command, "--curve", arguments.options.curve, kCurveRange, "S-curve of the ramps");
    addKey(command, arguments);
    checkName(
        command,
        *command
             .add_option("--flag-map", arguments.flagMap, "Draw the edges that are found as a picture too")
             ->option_text("FILE"),
        checkWriteName);
    addDepth(command, arguments.frame.depth);
    addAlpha(command, arguments.frame.alphaKind);
    command.footer(example("smooth drawing.png -o smooth.png --strength 90"));
}

void addParams(CLI::App& command, ParamsArguments& arguments) {
    command.description("List the effect's parameters");
    command.add_flag("--json", arguments.json, "As JSON, for programs");
    addFactory(command, arguments.factory);
    addPlugin(command, arguments.plugin);
    command.footer(example("params --plugin build/release/bin/Kovalune.so"));
}

void addDefaults(CLI::App& command, DefaultsArguments& arguments) {
    command.description("Remember, forget or show what new instances of the effect start with");
    addChoice<DefaultsAction>(command, "ACTION", arguments.action,
                              {{"save", DefaultsAction::kSave},
                               {"forget", DefaultsAction::kForget},
                               {"show", DefaultsAction::kShow}},
                              "What to do: save, forget, show")
        ->required();
    addSettings(command, arguments.effect);
    addView(command, arguments.view);
    command.footer(
        example("defaults save --set \"Blur Amount=12\" --set \"Color 1=#F0C8A0\"",
                "save remembers every parameter, with the values of the options; the others stay as "
                "they are,\nor become the effect's own with --factory or --params.\nshow prints what is "
                "remembered, as --params takes it. Hosts read the "
                "file when they start."));
}

/// Only what is saved has values.
void checkAction(const DefaultsArguments& arguments) {
    const EffectArguments& effect = arguments.effect;
    const bool hasValues =
        effect.paramsFile || !effect.settings.empty() || effect.factory || arguments.view.has_value();
    if (arguments.action != DefaultsAction::kSave && hasValues) {
        throw CLI::ValidationError("only save takes --set, --params, --view and --factory");
    }
}

void addInfo(CLI::App& command, InfoArguments& arguments) {
    command.description("Tell what the effect says of itself and what this build runs on");
    addPlugin(command, arguments.plugin);
    command.footer(example("info"));
}

void addColors(CLI::App& command, ColorsArguments& arguments) {
    command.description("List the flat colours of a picture by their share");
    addInput(command, arguments.input)->required();
    checkName(command,
              *command.add_option("-o,--output", arguments.output, "Draw them as a picture too")
                   ->option_text("FILE"),
              checkWriteName);
    addForce(command, arguments.force);
    addWhole(command, "--most", arguments.most, 0, 1 << 30, "List so many, 0 for all; default 32");
    addAlpha(command, arguments.alphaKind);
    command.footer(
        example("colors drawing.png -o palette.png",
                "Each line: share of all pixels, pixels, the nearest #RRGGBB, and for more than 8 bits "
                "the exact values.\nColours are counted straight, as the effect sees them, and whatever "
                "their alpha; pixels of alpha 0\nare counted apart as transparent."));
}

void addPick(CLI::App& command, PickArguments& arguments) {
    command.description("Tell the exact values of one pixel");
    addInput(command, arguments.input)->required();
    command
        .add_option_function<std::string>(
            "PIXEL",
            [&arguments](const std::string& text) {
                const std::size_t comma = text.find(',');
                if (comma == std::string::npos || !readWhole(text.substr(0, comma), arguments.x) ||
                    !readWhole(text.substr(comma + 1), arguments.y)) {
                    refuse("PIXEL", "X,Y, two whole numbers from 0,0 at the top left", text);
                }
            },
            "The pixel, counted from 0,0 at the top left")
        ->required()
        ->option_text("X,Y REQUIRED");
    addAlpha(command, arguments.alphaKind);
    command.footer(example("pick drawing.png 640,360"));
}

void addCompare(CLI::App& command, CompareArguments& arguments) {
    command.description("Tell whether two pictures are the same, and where not");
    checkName(command, *command.add_option("A", arguments.first, "A picture")->required(), checkReadName);
    checkName(command, *command.add_option("B", arguments.second, "Another one")->required(), checkReadName);
    checkName(command,
              *command.add_option("--diff", arguments.diff, "Draw where they differ")->option_text("FILE"),
              checkWriteName);
    addForce(command, arguments.force);
    command.footer(example(
        "compare before.png after.png --diff where.png",
        "Samples are compared exactly, as fractions of white and as they stand in the files; missing alpha "
        "is full.\n-0 is the same as 0, NaN the same as NaN of the same bits.\n"
        "Exit code: 0 the same, 1 different."));
}

/// Every sub-command with its record, in the order of the help.
class CommandLine {
public:
    CommandLine() {
        app_.set_version_flag("--version", kVersionLine, "Print the version and exit");
        app_.require_subcommand(1);
        app_.footer(kExitCodes);
        add<RenderArguments>("render", addRender);
        add<SheetArguments>("sheet", addSheet);
        add<SmoothArguments>("smooth", addSmooth);
        add<ColorsArguments>("colors", addColors);
        add<PickArguments>("pick", addPick);
        add<CompareArguments>("compare", addCompare);
        add<ParamsArguments>("params", addParams);
        add<DefaultsArguments>("defaults", addDefaults);
        add<InfoArguments>("info", addInfo);
        addHelp();
    }

    Arguments parse(int count, const char* const* words) {
        checkQuotes({words, static_cast<std::size_t>(count)});
        try {
            app_.parse(count, words);
            if (help_->parsed()) {
                return ShownText{helpText()};
            }
            for (const auto& [command, arguments] : commands_) {
                if (!command->parsed()) {
                    continue;
                }
                const Arguments result = arguments();
                if (const auto* render = std::get_if<RenderArguments>(&result)) {
                    checkFiles(*render);
                }
                if (const auto* sheet = std::get_if<SheetArguments>(&result)) {
                    checkReport(sheet->report, sheet->effect);
                }
                if (const auto* defaults = std::get_if<DefaultsArguments>(&result)) {
                    checkAction(*defaults);
                }
                return result;
            }
        } catch (const CLI::CallForHelp&) {
            return ShownText{app_.help()};
        } catch (const CLI::CallForVersion& version) {
            return ShownText{std::string(version.what()) + '\n'};
        } catch (const CLI::ParseError& error) {
            failUsage(app_, error);
        }
        throw Failure(ExitCode::kUsage, "a subcommand is required; 'kovalune --help' shows the usage");
    }

private:
    template <class Record>
    void add(const std::string& name, void (*addOptions)(CLI::App&, Record&)) {
        CLI::App* command = app_.add_subcommand(name);
        const auto record = std::make_shared<Record>();
        addOptions(*command, *record);
        commands_.emplace_back(command, [record] { return Arguments(*record); });
    }

    void addHelp() {
        help_ = app_.add_subcommand("help", "Show what --help behind a command shows");
        help_->add_option("COMMAND", topic_, "The command; without one, all commands are listed")
            ->option_text(" ");
        help_->footer(example("help render"));
    }

    /// Of one command or of all.
    std::string helpText() const {
        const auto isTopic = [this](const CLI::App* command) { return command->get_name() == topic_; };
        const std::vector<const CLI::App*> commands = app_.get_subcommands(isTopic);
        if (!topic_.empty() && commands.empty()) {
            failUnknownCommand(app_, topic_);
        }
        const std::string program = kProgram;
        return app_.get_formatter()->make_help(topic_.empty() ? &app_ : commands.front(),
                                               topic_.empty() ? program : program + ' ' + topic_,
                                               CLI::AppFormatMode::Normal);
    }

    CLI::App app_{"Softens flat-colour drawings region by region, each inside itself.", kProgram};
    std::vector<std::pair<CLI::App*, std::function<Arguments()>>> commands_;
    CLI::App* help_ = nullptr;
    std::string topic_; ///< of it
};

} // namespace

Arguments parseArguments(int count, const char* const* words) {
    return CommandLine().parse(count, words);
}

} // namespace kovalune
