// Pictures of a shot from their files, through the effect or something else, into files.
#pragma once

#include "render/FrameRequest.h"
#include "render/OpenEffect.h"
#include "render/ShotSettings.h"
#include "render/shots/FrameForm.h"
#include "render/shots/SequencePlan.h"
#include "render/shots/SequenceRun.h"
#include "render/shots/ShotAreas.h"
#include "render/shots/SourceFrame.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::shots {

/// Takes the result for a frame of the plan, from 0 on. Called by several threads at once; what it throws is the frame's failure.
using PictureTaker =
    std::function<void(std::size_t frame, const SourceFrame& source, const host::Image& result)>;

/// How the pictures of a run are read and written.
struct PictureRequest {
    FrameForm form;
    /// The text for the picture's notes, where the form embeds settings. Called by several threads at once.
    std::function<std::string(const PlannedFrame& frame)> settingsOf;
    ExistingOutputs existing = ExistingOutputs::kReplace;
    std::vector<std::string> settingsFiles; ///< that ExistingOutputs::kNewer looks at too
    PictureTaker take;                      ///< instead of writing a file
    const ShotAreas* areas =
        nullptr; ///< whose masks it looks at too, and where passes may work; null: everywhere
};

struct ShotRequest {
    PictureRequest pictures;
    render::Downsample downsample{};
    bool legacy = false;
    bool counts = true;         ///< the effect is the built-in one, which reports
    bool countsChanges = false; ///< what takes most of a report's time
    int64_t frame = 0;          ///< whose values count for a picture without a number
};

enum class FrameState {
    kWritten,
    kPassedOver, ///< its output was there
    kFailed,
    kGivenUp,
};

/// What a step took, in milliseconds.
struct FrameTimes {
    double reading = 0.0;
    double effect = 0.0;
    double writing = 0.0;
};

/// Of a pass over a frame.
struct PassRecord {
    std::optional<FrameReport> counts;
    std::vector<std::string> notes; ///< of what its settings do not do
};

struct FrameRecord {
    std::size_t index = 0; ///< in the plan
    FrameState state = FrameState::kWritten;
    text::FailureKind kind = text::FailureKind::kFile; ///< of a failure
    std::string message;                               ///< likewise
    FrameTimes times;
    std::vector<PassRecord> passes;
    std::vector<std::string> leftOut;  ///< of the input
    std::optional<std::string> losses; ///< of the input's file: see lossesOf
};

/// Makes the result for a frame's picture, in its format and size, and may fill the record. Called by several threads at once.
using PictureMaker =
    std::function<host::Image(const PlannedFrame& frame, const SourceFrame& source, FrameRecord& record)>;

/// Is told of each frame that was begun, as it ends, by one thread at a time.
using FrameListener = std::function<void(FrameRecord& record)>;

/// Throws only where the run itself breaks; see runSequence.
void runPictures(const SequencePlan& plan, const PictureRequest& request, const RunOptions& options,
                 const PictureMaker& make, const FrameListener& ended);

/// The same through the effect, which may be used by nobody else meanwhile.
void runShot(render::OpenEffect& effect, const render::ShotSettings& settings, const SequencePlan& plan,
             const ShotRequest& request, const RunOptions& options, const FrameListener& ended);

} // namespace kovalune::shots
