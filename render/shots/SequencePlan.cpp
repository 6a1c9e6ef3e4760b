#include "render/shots/SequencePlan.h"

#include "pictures/PictureFile.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/FrameList.h"
#include "render/shots/OutputFile.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <set>
#include <sys/stat.h>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kovalune::shots {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void refuse(const std::string& text) {
    throw text::Failure(text::FailureKind::kUsage, text);
}

[[noreturn]] void failWriting(const std::string& name, const std::string& reason) {
    throw text::Failure(text::FailureKind::kFile, "cannot write " + text::inQuotes(name) + ": " + reason);
}

/// Where the pictures of a run go.
class OutputNames {
public:
    OutputNames(const SequenceInput& input, const std::string& output, bool makeFolder)
        : input_(input), output_(output),
          isFolder_(!input.isOnePicture() && namesFolder(output, makeFolder)) {
        if (!isFolder_) {
            pattern_ = FramePattern::of(output);
        }
    }

    /// `number` is that of the output.
    std::string of(const PlannedFrame& frame, std::optional<int64_t> number) const {
        if (pattern_ && number) {
            return pattern_->nameOf(*number);
        }
        if (!isFolder_) {
            return output_;
        }
        const std::string name = number ? input_.pattern->nameOf(*number) : frame.input;
        return (fs::path(output_) / fs::path(name).filename()).string();
    }

    void check(std::size_t frames) const {
        if (pattern_ && !input_.isSequence()) {
            refuse(
                input_.isOnePicture()
                    ? "the output " + text::inQuotes(output_) +
                          " has a place for a number, and the INPUT has none; write the INPUT as a pattern "
                          "with --frames 7"
                    : "the output " + text::inQuotes(output_) +
                          " has a place for a number, and these INPUTs have none; write a folder");
        }
        if (!pattern_ && !isFolder_ && frames > 1) {
            refuse("the output " + text::inQuotes(output_) + " is one picture, and the INPUT stands for " +
                   std::to_string(frames) + "; write " +
                   (input_.isSequence() ? "a pattern, as 'soft.####.png', or a folder" : "a folder"));
        }
    }

private:
    static bool namesFolder(const std::string& output, bool makeFolder) {
        std::error_code error;
        if (output.ends_with('/') || fs::is_directory(output, error)) {
            return true;
        }
        return makeFolder && !pictures::formatOfName(output) && !FramePattern::of(output);
    }

    const SequenceInput& input_;
    const std::string& output_;
    bool isFolder_;
    std::optional<FramePattern> pattern_;
};

/// The frames of a numbered sequence, with or without files.
class NumberedFrames {
public:
    NumberedFrames(const SequenceInput& input, const SequenceOptions& options, SequencePlan& plan)
        : input_(input), options_(options), plan_(plan) {}

    /// Returns all that were wanted, with or without files.
    std::vector<int64_t> plan() {
        std::vector<int64_t> missing;
        std::vector<int64_t> all = wanted();
        for (const int64_t number : all) {
            if (!add(number)) {
                missing.push_back(number);
            }
        }
        if (!missing.empty() && options_.missing == MissingFrames::kHold) {
            failMissing(missing, "and no earlier one is there to hold");
        }
        if (!missing.empty() && options_.missing == MissingFrames::kError && !options_.keepGoing) {
            failMissing(missing,
                        "leave them out with --missing skip, or repeat the one before with --missing hold");
        }
        if (plan_.frames.empty()) {
            failMissing(missing, "so with these --frames there is nothing to do");
        }
        if (options_.missing == MissingFrames::kSkip) {
            plan_.skipped = missing;
        }
        return all;
    }

private:
    std::vector<int64_t> wanted() {
        if (options_.frames) {
            return *options_.frames;
        }
        const int64_t first = input_.frames.front();
        const int64_t last = input_.frames.back();
        // Numbers far apart are no shot with gaps.
        const auto span = static_cast<uint64_t>(last) - static_cast<uint64_t>(first);
        if (span >= kMostFrames) {
            return input_.frames;
        }
        std::vector<int64_t> all;
        for (int64_t number = first; number <= last; ++number) {
            const bool isThere = std::binary_search(input_.frames.begin(), input_.frames.end(), number);
            if (isThere || options_.missing == MissingFrames::kHold) {
                all.push_back(number);
            } else {
                plan_.gaps.push_back(number);
            }
        }
        return all;
    }

    /// False where it has no file; it is then a frame of the plan only if it is to fail alone.
    bool add(int64_t number) {
        PlannedFrame frame;
        frame.number = number;
        const auto next = std::upper_bound(input_.frames.begin(), input_.frames.end(), number);
        const bool hasEarlier = next != input_.frames.begin();
        const bool isThere = hasEarlier && *(next - 1) == number;
        if (!isThere && hasEarlier && options_.missing == MissingFrames::kHold) {
            frame.held = *(next - 1);
        }
        const bool has = isThere || frame.held;
        frame.isMissing = !has;
        frame.input = input_.pattern->nameOf(frame.held.value_or(number));
        if (has || (options_.missing == MissingFrames::kError && options_.keepGoing)) {
            plan_.frames.push_back(std::move(frame));
        }
        return has;
    }

    [[noreturn]] void failMissing(const std::vector<int64_t>& missing, const std::string& advice) const {
        const std::string list = framesText(missing, input_.pattern->width());
        throw text::Failure(text::FailureKind::kFile,
                            (missing.size() == 1 ? "frame " : "frames ") + text::shown(list) + " of " +
                                text::inQuotes(input_.pattern->shown()) +
                                (missing.size() == 1 ? " has no file; " : " have no file; ") + advice);
    }

    const SequenceInput& input_;
    const SequenceOptions& options_;
    SequencePlan& plan_;
};

/// What files are the same, whatever their names; one that is not there yet is told by its folder and name.
std::string identityOf(const std::string& name) {
    struct stat status {};
    if (::stat(name.c_str(), &status) == 0) {
        return std::to_string(status.st_dev) + ':' + std::to_string(status.st_ino);
    }
    std::error_code error;
    const fs::path file(name);
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    return (fs::weakly_canonical(folder, error) / file.filename()).string();
}

/// A file may be read by several frames, where one is held, and written by one that reads it alone.
void checkNames(const SequencePlan& plan) {
    std::unordered_map<std::string, std::vector<std::size_t>> readers;
    for (std::size_t i = 0; i < plan.frames.size(); ++i) {
        readers[identityOf(plan.frames[i].input)].push_back(i);
    }
    std::unordered_map<std::string, std::size_t> writers;
    for (std::size_t i = 0; i < plan.frames.size(); ++i) {
        const PlannedFrame& frame = plan.frames[i];
        const std::string identity = identityOf(frame.output);
        const auto [other, isNew] = writers.emplace(identity, i);
        if (!isNew) {
            refuse("the frames " + text::inQuotes(plan.nameOf(plan.frames[other->second])) + " and " +
                   text::inQuotes(plan.nameOf(frame)) + " would both be written to one file");
        }
        for (const std::size_t reader : readers[identity]) {
            if (reader != i) {
                refuse("cannot write " + text::inQuotes(frame.output) + ": it is the input of frame " +
                       text::shown(plan.nameOf(plan.frames[reader])));
            }
        }
    }
}

void checkOptions(const SequenceInput& input, const SequenceOptions& options) {
    if (input.isSequence()) {
        return;
    }
    if (options.frames || options.renumber) {
        refuse(std::string(options.frames ? "--frames" : "--renumber") +
               ": the INPUT has no frame numbers; write a pattern, as 'cel.####.png'");
    }
}

} // namespace

std::string SequencePlan::nameOf(const PlannedFrame& frame) const {
    return frame.number ? frameText(*frame.number, width) : fs::path(frame.input).filename().string();
}

namespace {

struct WholePlan {
    SequencePlan plan;
    std::vector<int64_t> numbers; ///< of a sequence, with those that are left out
};

WholePlan planWhole(const SequenceInput& input, const SequenceOptions& options) {
    checkOptions(input, options);
    WholePlan whole;
    SequencePlan& plan = whole.plan;
    plan.isSequence = input.isSequence();
    plan.isOnePicture = input.isOnePicture();
    if (input.pattern) {
        plan.width = input.pattern->width();
        whole.numbers = NumberedFrames(input, options, plan).plan();
    }
    for (const std::string& picture : input.pictures) {
        plan.frames.push_back({.number = std::nullopt,
                               .input = picture,
                               .output = {},
                               .isMissing = false,
                               .held = std::nullopt});
    }
    return whole;
}

/// Numbers that are left out go to the part that they would be in; gaps are everyone's.
SequencePlan partOf(WholePlan whole, const std::optional<FramePart>& part) {
    SequencePlan& plan = whole.plan;
    if (!part) {
        return std::move(plan);
    }
    if (plan.isSequence) {
        const Places places = placesOf(*part, whole.numbers.size());
        const std::unordered_set<int64_t> own(
            whole.numbers.begin() + static_cast<std::ptrdiff_t>(places.begin),
            whole.numbers.begin() + static_cast<std::ptrdiff_t>(places.end));
        std::erase_if(plan.frames,
                      [&own](const PlannedFrame& frame) { return !own.contains(*frame.number); });
        std::erase_if(plan.skipped, [&own](int64_t number) { return !own.contains(number); });
    } else {
        const Places places = placesOf(*part, plan.frames.size());
        std::vector<PlannedFrame> own;
        for (std::size_t place = places.begin; place < places.end; ++place) {
            own.push_back(std::move(plan.frames[place]));
        }
        plan.frames = std::move(own);
    }
    return std::move(plan);
}

} // namespace

SequencePlan planInputs(const SequenceInput& input, const SequenceOptions& options) {
    return partOf(planWhole(input, options), options.part);
}

SequencePlan planSequence(const SequenceInput& input, const std::string& output,
                          const SequenceOptions& options) {
    WholePlan whole = planWhole(input, options);
    SequencePlan& plan = whole.plan;
    int64_t shift = 0;
    if (options.renumber) {
        shift = *options.renumber - (options.frames ? options.frames->front() : input.frames.front());
    }
    const OutputNames outputs(input, output, options.makeFolders);
    outputs.check(plan.frames.size());
    for (PlannedFrame& frame : plan.frames) {
        frame.output = outputs.of(frame, frame.number ? std::optional(*frame.number + shift) : std::nullopt);
    }
    checkNames(plan);
    return partOf(std::move(whole), options.part);
}

void checkOutputs(const SequencePlan& plan, const SequenceOptions& options, const FrameForm& form) {
    std::set<fs::path> folders;
    for (const PlannedFrame& frame : plan.frames) {
        if (!plan.isOnePicture && (isStandardOutput(frame.output) || isStandardOutput(frame.input))) {
            throw text::Failure(text::FailureKind::kUsage,
                                "'-': the standard input and output are for one picture, not for a shot");
        }
        outputFormat(frame.output, form);
        if (isStandardOutput(frame.output)) {
            continue;
        }
        std::error_code error;
        const bool isThere = fs::exists(frame.output, error);
        if (isThere && options.existing == ExistingOutputs::kRefuse) {
            failWriting(frame.output, "it is there already, and --no-clobber keeps it");
        }
        const fs::path folder = fs::path(frame.output).parent_path();
        const bool isNewFolder = folders.insert(folder).second;
        if (options.makeFolders && !folder.empty() && !fs::exists(folder, error)) {
            continue; // it is yet to be made
        }
        // What holds for a folder is asked once; a file that is there may have rules of its own.
        if (isNewFolder || isThere) {
            checkWritable(frame.output, options.force);
        }
    }
}

void makeFolders(const SequencePlan& plan) {
    for (const PlannedFrame& frame : plan.frames) {
        const fs::path folder = fs::path(frame.output).parent_path();
        std::error_code error;
        if (folder.empty() || fs::exists(folder, error)) {
            continue;
        }
        fs::create_directories(folder, error);
        if (error) {
            failWriting(folder.string(), text::systemReason(error.value()));
        }
    }
}

} // namespace kovalune::shots
