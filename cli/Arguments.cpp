#include "cli/Arguments.h"

#include "cli/Failure.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace kovalune {

namespace {

constexpr char kProgram[] = "kovalune";
constexpr char kVersionLine[] = "kovalune " KOVALUNE_VERSION;

constexpr char kRenderExample[] =
    "Example:\n"
    "  kovalune render drawing.png -o soft.png --set \"Blur Amount=12\" --set \"Color 1=#F0C8A0\"\n"
    "\n"
    "'kovalune params' lists the labels and the values they take.";

constexpr char kParamsExample[] = "Example:\n"
                                  "  kovalune params --plugin build/bin/Kovalune.so";

constexpr char kUsageHint[] = "; 'kovalune --help' shows the usage";

constexpr char kExitCodes[] = "Example:\n"
                              "  kovalune render drawing.png -o soft.png --set \"Blur Amount=12\"\n"
                              "\n"
                              "Exit codes: 0 done, 2 wrong usage, 3 a file, 4 the effect.";

CLI::App& addRender(CLI::App& app, RenderArguments& arguments) {
    CLI::App& render = *app.add_subcommand("render", "Put a PNG picture through the effect");
    render.add_option("INPUT", arguments.input, "The PNG file to read")->required();
    render.add_option("-o,--output", arguments.output, "The PNG file to write; may be INPUT")
        ->required()
        ->option_text("FILE REQUIRED");
    render
        .add_option(
            "--set", arguments.settings,
            "Set a parameter; may be given again. Colours are #RRGGBB or r,g,b, check boxes on or off")
        ->allow_extra_args(false)
        ->option_text("LABEL=VALUE");
    render.add_option("--view", arguments.view, "Choose the View; wins over --set View=...")
        ->option_text("NAME");
    render
        .add_option("--threads", arguments.threads,
                    "Threads to work on, 1 to " + std::to_string(kMostThreads) + "; default: the machine's")
        ->check(CLI::Range(1, kMostThreads))
        ->option_text("N");
    render.add_option("--plugin", arguments.plugin, "Use the effect of this shared object")
        ->option_text("FILE");
    render.footer(kRenderExample);
    return render;
}

CLI::App& addParams(CLI::App& app, ParamsArguments& arguments) {
    CLI::App& params = *app.add_subcommand("params", "List the effect's parameters");
    params.add_option("--plugin", arguments.plugin, "Use the effect of this shared object")
        ->option_text("FILE");
    params.footer(kParamsExample);
    return params;
}

std::string inOneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

} // namespace

Arguments parseArguments(int count, const char* const* words) {
    CLI::App app("Softens flat-colour drawings region by region, each inside itself.", kProgram);
    app.set_version_flag("--version", kVersionLine, "Print the version and exit");
    app.require_subcommand(1);
    app.footer(kExitCodes);
    RenderArguments render;
    ParamsArguments params;
    const CLI::App& renderCommand = addRender(app, render);
    addParams(app, params);
    try {
        app.parse(count, words);
    } catch (const CLI::CallForHelp&) {
        return ShownText{app.help()};
    } catch (const CLI::CallForVersion& version) {
        return ShownText{std::string(version.what()) + '\n'};
    } catch (const CLI::ParseError& error) {
        // The parser only says that a command is missing.
        const std::vector<std::string> unknown = app.remaining();
        if (app.get_subcommands().empty() && !unknown.empty())
            throw Failure(ExitCode::Usage,
                          "there is no command or option " + inQuotes(unknown.front()) + kUsageHint);
        throw Failure(ExitCode::Usage, inOneLine(error.what()) + kUsageHint);
    }
    if (renderCommand.parsed())
        return render;
    return params;
}

} // namespace kovalune
