#include "cli/arguments/CommandSyntaxes.h"
#include "cli/arguments/OptionKinds.h"

namespace kovalune::cli {

namespace {

void addNumber(CommandSyntax& command, const std::string& name, int32_t& value, const IntRange& range,
               const std::string& what) {
    addWhole(command, name, value, range.lowest, range.highest,
             what + ", " + std::to_string(range.lowest) + " to " + std::to_string(range.highest) +
                 "; default " + std::to_string(value));
}

void addKey(CommandSyntax& command, SmoothArguments& arguments) {
    const OptionSyntax key =
        addChoice<SmoothKey>(command, "--key", arguments.options.key,
                             {{"only", SmoothKey::kOnly}, {"remove", SmoothKey::kRemove}},
                             "Leave out the key colour, or all but it: remove, only")
            .shownAs("USE");
    command.addText("--key-color", arguments.keyColor, "The key colour, #RRGGBB or r,g,b; default #FFFFFF")
        .needs(key)
        .shownAs("COLOR");
    addNumber(command, "--key-tolerance", arguments.options.keyTolerance, kKeyToleranceRange,
              "How far from the key colour still counts as it");
}

} // namespace

void addSmooth(CommandSyntax& command, SmoothArguments& arguments) {
    command.describe("Turn stair-steps into ramps: the effect's anti-aliasing alone, on any picture");
    addSequence(command, arguments.sequence);
    addNumber(command, "--threshold", arguments.options.threshold, kThresholdRange,
              "Neighbours are apart where their channels' differences add up to more");
    addNumber(command, "--strength", arguments.options.strength, kStrengthRange,
              "Percentage that stretches every ramp");
    addNumber(command, "--curve", arguments.options.curve, kCurveRange, "S-curve of the ramps");
    addKey(command, arguments);
    checkedAsDrawn(
        command,
        command.addText("--flag-map", arguments.flagMap, "Draw the edges that are found as a picture too")
            .shownAs("FILE"));
    addInFormat(command, arguments.form.decoding);
    addOutFormat(command, arguments.form);
    addExrChoice(command, arguments.form.decoding);
    addMaxPixels(command, arguments.form.decoding);
    addLinear(command, arguments.form.linear);
    addDepth(command, arguments.form.depth);
    addOutDepth(command, arguments.form);
    addPngLevel(command, arguments.form.encoding);
    addCompression(command, arguments.form.encoding);
    addAlpha(command, arguments.form.alphaKind);
    addCpu(command, arguments.cpu);
    command.addFlag("--quiet", arguments.quiet, "No progress, and no line at the end of a shot");
    command.addFooter(example("smooth drawing.png -o smooth.png --strength 90"));
}

void checkTogether(const SmoothArguments& arguments) {
    checkInputAndOutput(arguments.sequence);
}

} // namespace kovalune::cli
