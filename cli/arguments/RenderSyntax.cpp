// The commands that put a picture through the effect.

#include "cli/arguments/CommandSyntaxes.h"
#include "cli/arguments/OptionKinds.h"
#include "cli/files/SheetLayout.h"
#include "text/AsciiText.h"
#include "text/Failure.h"

#include <algorithm>

namespace kovalune::cli {

namespace {

void addEffect(CommandSyntax& command, EffectArguments& effect) {
    addSettings(command, effect);
    addWhole(command, "--threads", effect.threads, 1, render::kMostThreads,
             "Threads to work on, 1 to " + std::to_string(render::kMostThreads) +
                 "; default: as many as this process may use");
    addCpu(command, effect.cpu);
    addPlugin(command, effect.plugin);
}

/// "N/D" with 1 <= N <= D.
render::Fraction parsedFraction(const std::string& text) {
    constexpr int32_t kMost = 32767;
    const std::size_t slash = text.find('/');
    render::Fraction fraction;
    if (slash == std::string::npos || !readWhole(text.substr(0, slash), fraction.numerator) ||
        !readWhole(text.substr(slash + 1), fraction.denominator) || fraction.numerator < 1 ||
        fraction.denominator < fraction.numerator || fraction.denominator > kMost) {
        refuse("--downsample", "N/D or N/D,N/D with 1 <= N <= D <= " + std::to_string(kMost), text);
    }
    return fraction;
}

void addDownsample(CommandSyntax& command, render::Downsample& downsample) {
    const auto set = [&downsample](const std::string& text) {
        const std::size_t comma = text.find(',');
        downsample[0] = parsedFraction(text.substr(0, comma));
        downsample[1] = comma == std::string::npos ? downsample[0] : parsedFraction(text.substr(comma + 1));
    };
    command
        .addTaker("--downsample", set,
                  "The picture is a proxy of this factor (across,down); nothing is shrunk")
        .shownAs("N/D[,N/D]");
}

void addFrame(CommandSyntax& command, FrameArguments& frame) {
    addInFormat(command, frame.form.decoding);
    addOutFormat(command, frame.form);
    addExrChoice(command, frame.form.decoding);
    addMaxPixels(command, frame.form.decoding);
    addLinear(command, frame.form.linear);
    addDepth(command, frame.form.depth);
    addOutDepth(command, frame.form);
    addPngLevel(command, frame.form.encoding);
    addCompression(command, frame.form.encoding);
    addDownsample(command, frame.downsample);
    command.addFlag("--legacy", frame.legacy, "Render by the host's older command, without pre-render");
    addAlpha(command, frame.form.alphaKind);
    command.addFlag("--quiet", frame.quiet, "No progress, and no word of remembered defaults");
}

void addArea(CommandSyntax& command, render::AreaSettings& area) {
    const OptionSyntax mask = command
                                  .addText("--mask", area.mask,
                                           "Work only where this picture is not 0: in its alpha, or where it "
                                           "has none, its grey. Of a shot a pattern too")
                                  .shownAs("FILE");
    addChoice<std::optional<render::MaskBy>>(
        command, "--mask-by", area.maskBy,
        {{"alpha", render::MaskBy::kAlpha}, {"grey", render::MaskBy::kGrey}},
        "What of the mask counts: alpha, grey")
        .needs(mask)
        .shownAs("CHANNEL");
    const auto invert = [&area] { area.invert = true; };
    command.addAction("--invert-mask", invert, "Work where the mask is 0").needs(mask);
    const auto setRegion = [&area](const std::string& text) {
        try {
            area.region = render::parseRegion(text, "--region");
        } catch (const text::Failure& failure) {
            throw UsageMistake(failure.what());
        }
    };
    command.addTaker("--region", setRegion, "Work only here: pixels from the top left").shownAs("X,Y,W,H");
}

void addReport(CommandSyntax& command, ReportArguments& report) {
    command.addFlag("--strict", report.strict, "Write nothing, exit code 4, if a setting selects nothing");
    const OptionSyntax table = command.addFlag(
        "--report", report.report,
        "Print the pixels that each stage selected and changed; the built-in effect alone counts "
        "them");
    command.addFlag("--json", report.json, "The report as JSON, for programs").needs(table);
}

/// Names of views have no commas.
std::vector<std::string> listedNames(const std::string& text) {
    std::vector<std::string> names;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        names.emplace_back(text::trimmed(std::string_view(text).substr(start, end - start)));
        start = end + 1;
    }
    return names;
}

void addSheetForm(CommandSyntax& command, SheetArguments& arguments) {
    constexpr int kMostColumns = 64;
    command
        .addTaker(
            "--views", [&arguments](const std::string& text) { arguments.views = listedNames(text); },
            "Of one picture draw these views alone, in this order")
        .shownAs("NAME,NAME");
    command.addText("--view", arguments.view, "Of a shot draw this view; default: Normal").shownAs("NAME");
    addWhole(command, "--columns", arguments.columns, 1, kMostColumns,
             "Pictures beside each other, 1 to " + std::to_string(kMostColumns) +
                 "; default: 4 views, or as many as the width holds; of a shot as many as there are rows");
    const auto setScale = [&arguments](const std::string& text) {
        double read = 0.0;
        if (!readDecimal(text, read) || !(read > 0.0 && read <= 1.0)) {
            refuse("--scale", "a number above 0, at most 1", text);
        }
        arguments.scale = read;
    };
    command.addTaker("--scale", setScale, "Shrink the pictures by this factor, above 0 to 1").shownAs("N");
    addWhole(command, "--width", arguments.width, kNarrowestSheet, kWidestSheet,
             "Shrink the pictures until the sheet has so many pixels across; default: " +
                 std::to_string(kUsualSheetWidth));
}

void checkCpu(const EffectArguments& effect) {
    if (effect.cpu && effect.plugin) {
        throw UsageMistake("--cpu: is for the built-in effect; the one of --plugin chooses for itself");
    }
}

void checkReport(const ReportArguments& report, const EffectArguments& effect) {
    if (report.strict && effect.plugin) {
        throw UsageMistake(
            "--strict: needs the built-in effect, since the one of --plugin does not tell what it "
            "selects");
    }
}

/// Of what renders nothing and prints one thing.
void checkLists(const RenderArguments& arguments) {
    const SequenceArguments& sequence = arguments.sequence;
    if (arguments.listMissing && (sequence.options.dryRun || arguments.listFrames || arguments.printParams)) {
        throw UsageMistake(
            "--list-missing: renders and writes nothing, so leave out --dry-run, --list-frames "
            "and --print-params");
    }
    if (arguments.listFrames && (sequence.options.dryRun || sequence.options.part || arguments.sweep ||
                                 arguments.report.strict || arguments.printParams)) {
        throw UsageMistake("--list-frames: is of all frames together and changes nothing, so leave out "
                           "--dry-run, --part, --sweep, --strict and --print-params");
    }
    if (arguments.sweep && sequence.options.dryRun) {
        throw UsageMistake("--sweep: removes files, so leave it out with --dry-run");
    }
    const bool isFarms = arguments.listMissing || arguments.listFrames || arguments.sweep;
    if (isFarms && (sequence.inputs == std::vector<std::string>{"-"} || sequence.output == "-")) {
        throw UsageMistake("-: is one picture, so leave out --list-missing, --list-frames and --sweep");
    }
}

} // namespace

void addRender(CommandSyntax& command, RenderArguments& arguments) {
    command.describe("Put a picture through the effect");
    addSequence(command, arguments.sequence);
    addEffect(command, arguments.effect);
    addPasses(command, arguments.effect);
    addView(command, arguments.view);
    command.addFlag("--print-params", arguments.printParams,
                    "Print the parameters in use, as --params takes them; INPUT and output may be left out");
    command.addText("--save-params", arguments.saveParams, "Write them to this file").shownAs("FILE");
    addFrameNumber(command, "--frame", arguments.valueFrame,
                   "A picture without a number gets the keys of this frame");
    command.addText("--log", arguments.log, "Write a line of JSON for each frame to this file")
        .shownAs("FILE");
    addArea(command, arguments.area);
    addFrame(command, arguments.frame);
    command.addFlag("--embed", arguments.frame.form.embeds,
                    "Write the settings and the effect's version into the picture's notes; not into tga");
    addReport(command, arguments.report);
    command.addFlag(
        "--list-missing", arguments.listMissing,
        "Render nothing; print the frames whose output is missing, cannot be read, or is older than its "
        "input or settings, as --frames takes them. Exit code 1 if there are any");
    command.addFlag("--list-frames", arguments.listFrames,
                    "Render nothing; print the list of frames, their number, the memory that rendering takes "
                    "and the outputs' folder, for what spreads a shot over machines");
    command.addFlag("--sweep", arguments.sweep,
                    "First remove the temporary files that killed runs have left in the outputs' folders");
    command.addFlag("--time", arguments.time, "Print the milliseconds of reading, effect and writing");
    command.addFooter(
        example("render drawing.png -o soft.png --set \"Blur Amount=12\" --set \"Color 1=#F0C8A0\"",
                "'kovalune params' lists the labels and the values they take."));
}

void checkTogether(const RenderArguments& arguments) {
    const ReportArguments& report = arguments.report;
    checkReport(report, arguments.effect);
    checkCpu(arguments.effect);
    if (report.json && (arguments.printParams || arguments.time)) {
        throw UsageMistake("--json: prints one document, so leave out --print-params and --time");
    }
    const SequenceArguments& sequence = arguments.sequence;
    if (report.strict && sequence.options.part) {
        throw UsageMistake("--strict: judges all frames together, so leave it out with --part");
    }
    checkLists(arguments);
    const bool tellsParams = arguments.printParams || arguments.saveParams;
    if (sequence.inputs.empty() && sequence.output.empty() && tellsParams && !report.report &&
        !report.strict && !arguments.log) {
        return;
    }
    checkInputAndOutput(sequence);
}

void addSheet(CommandSyntax& command, SheetArguments& arguments) {
    command.describe("Draw all views of a picture side by side, or the frames of a shot");
    addRead(command, arguments.pictures);
    addOutput(command, arguments.output, arguments.force, "may not be INPUT").shownAs("FILE REQUIRED");
    addEffect(command, arguments.effect);
    addPasses(command, arguments.effect);
    addFrameNumber(command, "--frame", arguments.valueFrame,
                   "A picture without a number gets the keys of this frame");
    addArea(command, arguments.area);
    addFrame(command, arguments.frame);
    addReport(command, arguments.report);
    addSheetForm(command, arguments);
    command.addFooter(example("sheet drawing.png -o views.png --params jacket.txt"));
}

void checkTogether(const SheetArguments& arguments) {
    checkInputAndOutput(arguments.pictures.inputs, arguments.output);
    checkReport(arguments.report, arguments.effect);
    checkCpu(arguments.effect);
    if (arguments.scale && arguments.width > 0) {
        throw UsageMistake(
            "--scale: is the size of the pictures and --width that of the sheet; give one of them");
    }
}

} // namespace kovalune::cli
