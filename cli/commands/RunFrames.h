// What commands over several frames have in common: how the work is divided, the line while it runs, and the end.
#pragma once

#include "cli/arguments/Arguments.h"
#include "render/ShotSettings.h"
#include "render/shots/ShotRun.h"
#include "render/shots/ShotSummary.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace kovalune::cli {

/// What would be read and written, a line a frame on standard output; then throws what would stop the run.
void tellPlan(const shots::SequencePlan& plan, const SequenceArguments& sequence,
              const shots::FrameForm& form, bool quiet);

/// Keys count frames, which a picture without a number is none of: `frame` is then given. Throws Failure where it is not, or is
/// and there are numbers.
void checkKeys(const render::ShotSettings& settings, const shots::SequencePlan& plan,
               const std::optional<int64_t>& frame);

/// Whether `--part` leaves no frame to this command, which is told unless it is to be quiet.
bool isEmptyPart(const shots::SequencePlan& plan, const SequenceArguments& sequence, bool quiet);

/// Gaps of the sequence, and frames that are left out.
void tellGaps(const shots::SequencePlan& plan, bool quiet);

/// Bytes that rendering takes, with as many frames at once as `sequence` says, otherwise one; 0 where no picture can be read.
uint64_t memoryFor(const shots::SequencePlan& plan, const SequenceArguments& sequence,
                   const shots::FrameForm& form);

/// Frames at once and threads each, as far as `sequence` and `threads` (0: not said) leave them open. Tells how if it is asked to.
struct FrameDivision {
    int jobs = 1;
    int threads = 1;
};
FrameDivision divisionOf(const shots::SequencePlan& plan, const SequenceArguments& sequence,
                         const shots::FrameForm& form, int threads);

/// Calls `run` with what it takes to run frames, and returns what became of them. Throws Interruption.
shots::ShotSummary
runFrames(const shots::SequencePlan& plan, int jobs, bool keepGoing, bool quiet,
          const std::function<void(const shots::RunOptions&, const shots::FrameListener&)>& run);

/// Notes that frames have in common.
void tellNotices(const shots::ShotSummary& summary);

/// Tells what became of the frames; throws Failure of the worst frame's kind where one failed, or where `strict` and settings did
/// nothing in any frame.
void endByWorst(const shots::ShotSummary& summary, bool strict, bool quiet);

} // namespace kovalune::cli
