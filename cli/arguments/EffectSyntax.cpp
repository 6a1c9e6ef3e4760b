// The commands about the effect itself.

#include "cli/arguments/CommandSyntaxes.h"
#include "cli/arguments/OptionKinds.h"

namespace kovalune::cli {

void addParams(CommandSyntax& command, ParamsArguments& arguments) {
    command.describe("List the effect's parameters");
    command.addFlag("--json", arguments.json, "As JSON, for programs");
    addFrameNumber(command, "--at", arguments.frame,
                   "Print the values that the settings below give this frame, as --params takes them");
    addSettings(command, arguments.effect);
    addPasses(command, arguments.effect);
    addPlugin(command, arguments.effect.plugin);
    const OptionSyntax from = command
                                  .addText("--from", arguments.from,
                                           "Print the settings that render --embed wrote into this picture")
                                  .shownAs("PICTURE");
    checkedAsRead(command, from);
    addMaxPixels(command, arguments.decoding).needs(from);
    command.addFooter(example("params --at 12 --params shot.params"));
}

void addDefaults(CommandSyntax& command, DefaultsArguments& arguments) {
    command.describe("Remember, forget or show what new instances of the effect start with");
    addChoice<DefaultsAction>(command, "ACTION", arguments.action,
                              {{"save", DefaultsAction::kSave},
                               {"forget", DefaultsAction::kForget},
                               {"show", DefaultsAction::kShow}},
                              "What to do: save, forget, show")
        .required();
    addSettings(command, arguments.effect);
    addView(command, arguments.view);
    command.addFooter(
        example("defaults save --set \"Blur Amount=12\" --set \"Color 1=#F0C8A0\"",
                "save remembers every parameter, with the values of the options; the others stay as "
                "they are,\nor become the effect's own with --factory or --params.\nshow prints what is "
                "remembered, as --params takes it. Hosts read the "
                "file when they start."));
}

void checkTogether(const ParamsArguments& arguments) {
    const EffectArguments& effect = arguments.effect;
    const bool hasValues =
        !effect.paramsFiles.empty() || !effect.passFiles.empty() || !effect.settings.empty() || effect.until;
    if (arguments.from &&
        (arguments.json || effect.factory || effect.plugin || arguments.frame || hasValues)) {
        throw UsageMistake("--from: prints what the picture holds, so leave out all other options");
    }
    if (hasValues && !arguments.frame) {
        throw UsageMistake("--params, --pass, --set and --until are for --at FRAME; without it the table is "
                           "that of the effect");
    }
    if (arguments.frame && arguments.json) {
        throw UsageMistake("--json: is the form of the table, not of --at");
    }
}

void checkTogether(const DefaultsArguments& arguments) {
    const EffectArguments& effect = arguments.effect;
    const bool hasValues = !effect.paramsFiles.empty() || !effect.settings.empty() || effect.factory ||
                           arguments.view.has_value();
    if (arguments.action != DefaultsAction::kSave && hasValues) {
        throw UsageMistake("only save takes --set, --params, --view and --factory");
    }
}

void addInfo(CommandSyntax& command, InfoArguments& arguments) {
    command.describe("Tell what the effect says of itself and what this build runs on");
    command.addFlag("--json", arguments.json, "As JSON, for programs");
    addPlugin(command, arguments.plugin);
    command.addFooter(example("info"));
}

void addSelfCheck(CommandSyntax& command, SelfCheckArguments& arguments) {
    command.describe("Check that this machine makes the pixels that every other one makes");
    command.addFlag("--quick", arguments.quick, "Some scenes, with the instruction set in use: a second");
    addPlugin(command, arguments.plugin);
    command.addFooter(example("selfcheck", "Exit code: 4 where a scene comes out otherwise."));
}

} // namespace kovalune::cli
