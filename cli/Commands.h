// What each command does. All throw Failure; nothing is written then.
#pragma once

#include "cli/arguments/Arguments.h"

#include <string>

namespace kovalune::cli {

/// `kovalune render`: one picture from a file through the effect into a file. Looks at the names and the settings before
/// it reads the picture, and prints the parameters and times that are asked for. False where it was to list frames that are not
/// finished, and there are any.
bool runRender(const RenderArguments& arguments);

/// `kovalune sheet`: all views of a picture side by side in one picture, each with its name above, a row for each pass; or one view
/// of each frame of a shot with its number. The views are those that can be chosen, in the effect's order. The sheet is opaque and of the depth that `kovalune render` would write;
/// transparent parts are laid over a checkerboard. A sheet that would be too large is refused.
void runSheet(const SheetArguments& arguments);

/// `kovalune smooth`: the effect's boundary smoothing alone, without a host.
void runSmooth(const SmoothArguments& arguments);

/// `kovalune colors`: the flat colours of a picture by their share. One line a colour: share of all pixels, pixels,
/// #RRGGBB, a swatch where the standard output is a terminal with colours, and for more than 8 bits the exact values.
/// Transparent pixels have a line of their own at the end. The picture that the arguments name is written first.
std::string colorsText(const ColorsArguments& arguments);

/// `kovalune suggest`: settings for the pairs of colours that look like light and shadow, into a file. False where there is no
/// pair: nothing is written then. Prints the pairs.
bool runSuggest(const SuggestArguments& arguments);

/// `kovalune pick`: one pixel of a picture, as the file holds it and as the effect sees it. Lines of a title and a value.
/// Hue, lightness and saturation are those by which the effect matches colours: of the colour in 8 bits.
std::string pickText(const PickArguments& arguments);

struct Comparison {
    bool same = false;
    std::string text;
};

/// `kovalune compare`: whether two pictures are the same, and where they are not. Compares what the files hold, sample by
/// sample and exactly, as fractions of white. Missing alpha is full and grey is spread; alpha is not applied, whatever its
/// kind. A NaN is the same as one with the same bits only, and -0 the same as 0. Pictures of different sizes are
/// different, and no picture of their differences is written.
Comparison compareFiles(const CompareArguments& arguments);

/// `kovalune params`: the effect's table of parameters. One line a parameter: label, kind, default, and what it takes.
/// Groups are headed by their label, their members stand to the right of it. As JSON: see paramsJson.
std::string paramsText(const ParamsArguments& arguments);

/// `kovalune defaults`: what the user has made the defaults of new instances, as the effect's own dialog does it. Does it
/// and returns what to print. Refuses labels and values that the effect does not take, and a file that cannot be written
/// or deleted. Where there is nothing to forget or to show, the text says so.
std::string defaultsText(const DefaultsArguments& arguments);

/// `kovalune info`: what the effect says of itself, and what the command was built with and runs on. Lines of a title and
/// a value; further lines of a value are indented.
std::string infoText(const InfoArguments& arguments);

/// `kovalune selfcheck`: some four hundred frames and smoothed pictures with each instruction set of the machine, against the
/// hashes that they have everywhere. Prints the version, the machine and a line for each set; then throws Failure for the first
/// scene that came out otherwise.
void runSelfCheck(const SelfCheckArguments& arguments);

} // namespace kovalune::cli
