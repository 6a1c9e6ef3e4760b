// Which pictures a run reads and writes, worked out and looked at before the first of them.
#pragma once

#include "render/shots/FrameForm.h"
#include "render/shots/FramePart.h"
#include "render/shots/SequenceInput.h"

#include <cstdint>

#include <optional>
#include <string>

#include <vector>

namespace kovalune::shots {

/// A listed frame that has no file.
enum class MissingFrames {
    kError,
    kSkip,
    kHold, ///< the nearest earlier file, with the frame's own settings
};

/// An output that is there already.
enum class ExistingOutputs {
    kReplace,
    kSkip,   ///< it is passed over where it opens with the input's size
    kNewer,  ///< the same, unless something that it is made of is newer
    kRefuse, ///< before the first frame
};

struct SequenceOptions {
    std::optional<std::vector<int64_t>> frames; ///< in this order; otherwise those on disk
    MissingFrames missing = MissingFrames::kError;
    std::optional<FramePart> part;   ///< of the whole list, before anything is left out
    std::optional<int64_t> renumber; ///< the first output's number; the others keep their distance
    ExistingOutputs existing = ExistingOutputs::kReplace;
    bool makeFolders = false;
    bool dryRun = false;
    bool force = false;     ///< write-protected files are replaced too
    bool keepGoing = false; ///< a missing frame fails alone
};

struct PlannedFrame {
    std::optional<int64_t> number; ///< of the input's name
    std::string input;
    std::string output;
    bool isMissing = false;      ///< there is no input, and the frame fails
    std::optional<int64_t> held; ///< the frame whose file stands for it
};

struct SequencePlan {
    std::vector<PlannedFrame> frames;
    int width = 1;                ///< of the frames' numbers in texts
    bool isSequence = false;      ///< numbered
    bool isOnePicture = false;    ///< a plain picture to a plain picture
    std::vector<int64_t> gaps;    ///< between those on disk, where nothing else is said of them
    std::vector<int64_t> skipped; ///< listed, without a file, and left out

    /// What messages call a frame: its number or its picture's name.
    std::string nameOf(const PlannedFrame& frame) const;
};

/// `output` is a file, a pattern or a folder; a folder keeps the names. Throws Failure where the lists, names and files do not
/// go together: an output for several pictures or for the input of another frame, a frame that is missing and must not be.
/// Nothing is written.
SequencePlan planSequence(const SequenceInput& input, const std::string& output,
                          const SequenceOptions& options);

/// The same for pictures that are only looked at: without outputs.
SequencePlan planInputs(const SequenceInput& input, const SequenceOptions& options);

/// Throws Failure where an output cannot be written: see checkWritable and outputFormat. With options.makeFolders those that
/// are not there are taken for granted. The standard input and output are for one picture.
void checkOutputs(const SequencePlan& plan, const SequenceOptions& options, const FrameForm& form = {});

/// Those of the outputs, once nothing else can stop the run. Throws Failure.
void makeFolders(const SequencePlan& plan);

} // namespace kovalune::shots
