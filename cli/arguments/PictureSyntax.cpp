// The commands that tell something of pictures.

#include "cli/arguments/CommandSyntaxes.h"
#include "cli/arguments/OptionKinds.h"
#include "cli/files/PictureNames.h"

namespace kovalune::cli {

namespace {

void addTolerance(CommandSyntax& command, double& tolerance) {
    const auto set = [&tolerance](const std::string& text) {
        constexpr double kMost = 255.0;
        double read = 0.0;
        if (!readDecimal(text, read) || !(read >= 0.0 && read <= kMost)) {
            refuse("--tolerance", "a number, 0 to 255", text);
        }
        tolerance = read;
    };
    command
        .addTaker("--tolerance", set,
                  "Let samples be so far apart, of 255, in any channel and alpha; fractions too; default 0")
        .shownAs("N");
}

} // namespace

void addColors(CommandSyntax& command, ColorsArguments& arguments) {
    command.describe("List the flat colours of a picture or a shot by their share");
    addRead(command, arguments.pictures);
    checkedAsDrawn(
        command,
        command.addText("-o,--output", arguments.output, "Draw them as a picture too").shownAs("FILE"));
    addForce(command, arguments.force);
    addPngLevel(command, arguments.encoding);
    addWhole(command, "--most", arguments.most, 0, 1 << 30, "List so many, 0 for all; default 32");
    command.addFlag(
        "--where", arguments.where,
        "Tell where each lies: box as X,Y,W,H, pieces, neighbours with common borders, and pairs that "
        "look like light and shadow");
    command.addFlag("--json", arguments.json, "As JSON, for programs");
    addAlpha(command, arguments.alphaKind);
    addLinear(command, arguments.linear);
    addInFormat(command, arguments.decoding);
    addExrChoice(command, arguments.decoding);
    addMaxPixels(command, arguments.decoding);
    command.addFooter(
        example("colors drawing.png -o palette.png",
                "Each line: share of all pixels, pixels, the nearest #RRGGBB, and for more than 8 bits "
                "the exact values.\nColours are counted straight, as the effect sees them, and whatever "
                "their alpha; pixels of alpha 0\nare counted apart as transparent."));
}

void addSuggest(CommandSyntax& command, SuggestArguments& arguments) {
    command.describe("Propose settings for the pairs of colours that look like light and shadow");
    addRead(command, arguments.pictures);
    command
        .addText("-o,--output", arguments.output,
                 "The file of settings to write, as --params takes it; each line has its figures as a remark")
        .required()
        .checkedBy(checkParamsTarget)
        .shownAs("FILE REQUIRED");
    addForce(command, arguments.force);
    addAlpha(command, arguments.alphaKind);
    addLinear(command, arguments.linear);
    addInFormat(command, arguments.decoding);
    addExrChoice(command, arguments.decoding);
    addMaxPixels(command, arguments.decoding);
    command.addFooter(example("suggest drawing.png -o drawing.params",
                              "More than four pairs make several passes of one file.\n"
                              "Exit code: 1 where no two colours look like light and shadow; nothing is "
                              "written then."));
}

void checkTogether(const ColorsArguments& arguments) {
    checkRead(arguments.pictures);
}

void checkTogether(const SuggestArguments& arguments) {
    checkRead(arguments.pictures);
}

void addPick(CommandSyntax& command, PickArguments& arguments) {
    command.describe("Tell the exact values of pixels");
    addInput(command, arguments.input).required();
    const auto addPoint = [&arguments](const std::string& text) {
        const std::size_t comma = text.find(',');
        PickedPoint point;
        if (comma == std::string::npos || !readWhole(text.substr(0, comma), point.x) ||
            !readWhole(text.substr(comma + 1), point.y)) {
            refuse("PIXEL", "X,Y, two whole numbers from 0,0 at the top left", text);
        }
        arguments.points.push_back(point);
    };
    command.addTakers("PIXEL", addPoint, "The pixels, counted from 0,0 at the top left")
        .required()
        .shownAs("X,Y ... REQUIRED");
    command.addFlag("--json", arguments.json, "As JSON, for programs");
    addAlpha(command, arguments.alphaKind);
    addLinear(command, arguments.linear);
    addInFormat(command, arguments.decoding);
    addExrChoice(command, arguments.decoding);
    addMaxPixels(command, arguments.decoding);
    command.addFooter(example("pick drawing.png 640,360 700,412"));
}

void addCompare(CommandSyntax& command, CompareArguments& arguments) {
    command.describe("Tell whether two pictures, or two shots, are the same, and where not");
    command.addText("A", arguments.first, "A picture; or a shot: a pattern or a folder").required();
    command.addText("B", arguments.second, "Another one").required();
    addFrameList(command, arguments.frames);
    checkedAsDrawn(command,
                   command.addText("--diff", arguments.diff, "Draw where they differ").shownAs("FILE"));
    addForce(command, arguments.force);
    addPngLevel(command, arguments.encoding);
    addTolerance(command, arguments.tolerance);
    addInFormat(command, arguments.decoding);
    addExrChoice(command, arguments.decoding);
    addMaxPixels(command, arguments.decoding);
    command.addFlag("--json", arguments.json, "As JSON, for programs");
    command.addFooter(example("compare before.png after.png --diff where.png",
                              "Without a tolerance samples are compared exactly, as fractions of white and "
                              "as they stand in the files; missing alpha "
                              "is full.\n-0 is the same as 0, NaN the same as NaN of the same bits.\n"
                              "Exit code: 0 the same, 1 different."));
}

void checkTogether(const CompareArguments& arguments) {
    if (arguments.first == "-" && arguments.second == "-") {
        throw UsageMistake("A and B: only one of them can be the standard input");
    }
}

} // namespace kovalune::cli
