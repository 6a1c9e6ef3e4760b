// Which pictures a command reads and writes.

#include "cli/arguments/CommandSyntaxes.h"
#include "cli/arguments/OptionKinds.h"
#include "pictures/PictureFile.h"
#include "render/shots/FrameList.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>

namespace kovalune::cli {

namespace {

void addInputs(CommandSyntax& command, std::vector<std::string>& inputs) {
    command
        .addPlaces(
            "INPUT", inputs,
            "The picture to read, - for the standard input: " + pictures::formatNames() +
                "; or a shot: a pattern ('cel.####.png', 'cel.%04d.png'), a folder, or several pictures")
        .shownAs("...");
}

void addFiles(CommandSyntax& command, SequenceArguments& sequence) {
    addInputs(command, sequence.inputs);
    command
        .addText("-o,--output", sequence.output,
                 "The picture to write; its name's end (" + pictures::usualNameEnds() +
                     ") says the format; may be INPUT; - for the standard output. Of a shot a pattern, or a "
                     "folder, which keeps the names")
        .shownAs("FILE");
    addForce(command, sequence.options.force);
    command.addFlag("--mkdir", sequence.options.makeFolders, "Make the output's folder where there is none");
}

void addMissing(CommandSyntax& command, shots::SequenceOptions& options) {
    addChoice<shots::MissingFrames>(
        command, "--missing", options.missing,
        {{"error", shots::MissingFrames::kError},
         {"skip", shots::MissingFrames::kSkip},
         {"hold", shots::MissingFrames::kHold}},
        "What to do for a frame of --frames without a file: error, the default; skip; hold "
        "the nearest earlier one, which fills gaps too")
        .shownAs("WHAT");
}

void addExisting(CommandSyntax& command, shots::SequenceOptions& options) {
    const auto add = [&](const char* name, shots::ExistingOutputs existing, const char* what) {
        const auto set = [&options, existing] {
            if (options.existing != shots::ExistingOutputs::kReplace) {
                throw UsageMistake("one of --skip-existing, --newer and --no-clobber can hold");
            }
            options.existing = existing;
        };
        command.addAction(name, set, what);
    };
    add("--skip-existing", shots::ExistingOutputs::kSkip,
        "Pass over frames whose output opens with the input's size");
    add("--newer", shots::ExistingOutputs::kNewer, "The same, unless the input or a settings file is newer");
    add("--no-clobber", shots::ExistingOutputs::kRefuse, "Write nothing where an output is there already");
}

} // namespace

void addFrameList(CommandSyntax& command, std::optional<std::vector<int64_t>>& frames) {
    const auto setFrames = [&frames](const std::string& text) {
        try {
            frames = shots::parseFrames(text);
        } catch (const text::Failure& failure) {
            throw UsageMistake(failure.what());
        }
    };
    command
        .addTaker("--frames", setFrames,
                  "Of a shot these frames, in this order: N, A-B or A-BxS (every S-th; A-B:S too), joined by "
                  "commas")
        .shownAs("LIST");
}

void addRead(CommandSyntax& command, ReadArguments& read) {
    addInputs(command, read.inputs);
    addFrameList(command, read.options.frames);
    addMissing(command, read.options);
}

void addSequence(CommandSyntax& command, SequenceArguments& sequence) {
    addFiles(command, sequence);
    addFrameList(command, sequence.options.frames);
    addMissing(command, sequence.options);
    const auto setPart = [&sequence](const std::string& text) {
        try {
            sequence.options.part = shots::parsePart(text);
        } catch (const text::Failure& failure) {
            throw UsageMistake(failure.what());
        }
        sequence.options.keepGoing = true;
    };
    command
        .addTaker("--part", setPart,
                  "Only the K-th of N even shares of the frames, for machines that take one each; implies "
                  "--keep-going")
        .shownAs("K/N");
    addFrameNumber(command, "--renumber", sequence.options.renumber, "Give the first output this number");
    addExisting(command, sequence.options);
    command.addFlag("--keep-going", sequence.options.keepGoing,
                    "Go on with the other frames after one has failed");
    command.addFlag("--dry-run", sequence.options.dryRun,
                    "Print what would be read and written, and do nothing");
    const auto setJobs = [&sequence](const std::string& text) {
        int jobs = 0;
        if (!readWhole(text, jobs) || jobs < 1 || jobs > render::kMostThreads) {
            refuse("--jobs", "a whole number, 1 to " + std::to_string(render::kMostThreads), text);
        }
        sequence.jobs = jobs;
    };
    command
        .addTaker("--jobs", setJobs,
                  "Frames at once, 1 to " + std::to_string(render::kMostThreads) +
                      "; default: with --threads what the machine and its free memory bear")
        .shownAs("N");
    command.addFlag("--verbose", sequence.verbose, "Tell how the work is divided");
}

void checkRead(const ReadArguments& read) {
    if (read.inputs.empty()) {
        throw UsageMistake("INPUT is required");
    }
}

void checkStreams(const SequenceArguments& sequence) {
    const bool reads =
        std::find(sequence.inputs.begin(), sequence.inputs.end(), "-") != sequence.inputs.end();
    if (!reads && sequence.output != "-") {
        return;
    }
    if (sequence.jobs || sequence.options.existing != shots::ExistingOutputs::kReplace ||
        sequence.options.dryRun || sequence.options.frames || sequence.options.part ||
        sequence.inputs.size() > 1) {
        throw UsageMistake(
            "-: is one picture, so leave out other INPUTs, --frames, --part, --jobs, --dry-run, "
            "--skip-existing, --newer and --no-clobber");
    }
}

void checkInputAndOutput(const std::vector<std::string>& inputs, const std::string& output) {
    if (std::all_of(inputs.begin(), inputs.end(), [](const std::string& input) { return input.empty(); })) {
        throw UsageMistake("INPUT is required");
    }
    if (output.empty() && inputs.size() > 1) {
        throw UsageMistake("--output is required: is it " + text::inQuotes(inputs.back()) +
                           "? The picture to write stands after -o");
    }
    if (output.empty()) {
        throw UsageMistake("--output is required");
    }
}

void checkInputAndOutput(const SequenceArguments& sequence) {
    checkStreams(sequence);
    checkInputAndOutput(sequence.inputs, sequence.output);
}

} // namespace kovalune::cli
