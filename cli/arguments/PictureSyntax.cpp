// The commands that tell something of pictures.

#include "cli/arguments/CommandSyntaxes.h"
#include "cli/arguments/OptionKinds.h"

namespace kovalune::cli {

void addColors(CommandSyntax& command, ColorsArguments& arguments) {
    command.describe("List the flat colours of a picture by their share");
    addInput(command, arguments.input).required();
    checkedAsWritten(
        command,
        command.addText("-o,--output", arguments.output, "Draw them as a picture too").shownAs("FILE"));
    addForce(command, arguments.force);
    addPngLevel(command, arguments.encoding);
    addWhole(command, "--most", arguments.most, 0, 1 << 30, "List so many, 0 for all; default 32");
    addAlpha(command, arguments.alphaKind);
    command.addFooter(
        example("colors drawing.png -o palette.png",
                "Each line: share of all pixels, pixels, the nearest #RRGGBB, and for more than 8 bits "
                "the exact values.\nColours are counted straight, as the effect sees them, and whatever "
                "their alpha; pixels of alpha 0\nare counted apart as transparent."));
}

void addPick(CommandSyntax& command, PickArguments& arguments) {
    command.describe("Tell the exact values of one pixel");
    addInput(command, arguments.input).required();
    const auto setPlace = [&arguments](const std::string& text) {
        const std::size_t comma = text.find(',');
        if (comma == std::string::npos || !readWhole(text.substr(0, comma), arguments.x) ||
            !readWhole(text.substr(comma + 1), arguments.y)) {
            refuse("PIXEL", "X,Y, two whole numbers from 0,0 at the top left", text);
        }
    };
    command.addTaker("PIXEL", setPlace, "The pixel, counted from 0,0 at the top left")
        .required()
        .shownAs("X,Y REQUIRED");
    addAlpha(command, arguments.alphaKind);
    command.addFooter(example("pick drawing.png 640,360"));
}

void addCompare(CommandSyntax& command, CompareArguments& arguments) {
    command.describe("Tell whether two pictures are the same, and where not");
    checkedAsRead(command, command.addText("A", arguments.first, "A picture").required());
    checkedAsRead(command, command.addText("B", arguments.second, "Another one").required());
    checkedAsWritten(command,
                     command.addText("--diff", arguments.diff, "Draw where they differ").shownAs("FILE"));
    addForce(command, arguments.force);
    addPngLevel(command, arguments.encoding);
    command.addFooter(example(
        "compare before.png after.png --diff where.png",
        "Samples are compared exactly, as fractions of white and as they stand in the files; missing alpha "
        "is full.\n-0 is the same as 0, NaN the same as NaN of the same bits.\n"
        "Exit code: 0 the same, 1 different."));
}

} // namespace kovalune::cli
