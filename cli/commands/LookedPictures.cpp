#include "cli/commands/LookedPictures.h"

#include "cli/commands/RenderPicture.h"
#include "cli/commands/RunFrames.h"
#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "text/Failure.h"

namespace kovalune::cli {

shots::SequencePlan lookedPlan(const ReadArguments& arguments) {
    shots::SequencePlan plan = shots::planInputs(shots::sequenceInput(arguments.inputs), arguments.options);
    if (plan.frames.empty()) {
        throw text::Failure(text::FailureKind::kFile, "none of the frames of --frames has a file");
    }
    tellGaps(plan, false);
    return plan;
}

std::string lookedName(const ReadArguments& arguments) {
    const shots::SequenceInput input = shots::sequenceInput(arguments.inputs);
    return input.isSequence() ? input.pattern->shown() : arguments.inputs.front();
}

std::vector<std::string> lookedFiles(const shots::SequencePlan& plan) {
    std::vector<std::string> files;
    for (const shots::PlannedFrame& frame : plan.frames) {
        files.push_back(frame.input);
    }
    return files;
}

int64_t lookedNumber(const shots::SequencePlan& plan, std::size_t index) {
    return plan.frames[index].number.value_or(static_cast<int64_t>(index) + 1);
}

void lookAtAll(const shots::SequencePlan& plan, const LookForm& form,
               const std::function<void(const pictures::Picture& picture, std::size_t index)>& look) {
    for (std::size_t index = 0; index < plan.frames.size(); ++index) {
        const std::string& file = plan.frames[index].input;
        pictures::withMemoryFor(file, [&] {
            pictures::Picture picture = pictures::readPicture(file, form.decoding);
            noteLosses(picture, file);
            if (form.alphaKind) {
                picture.alphaKind = *form.alphaKind;
            }
            if (form.linear) {
                picture.isLinear = true;
                picture = pictures::displayed(picture);
            }
            look(picture, index);
        });
    }
}

} // namespace kovalune::cli
