// The pictures that a command looks at, one after the other.
#pragma once

#include "cli/arguments/Arguments.h"
#include "pictures/Picture.h"
#include "render/shots/SequencePlan.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::cli {

/// Frames that the shot lacks are told on standard error. Throws Failure as planInputs does, and where nothing is left.
shots::SequencePlan lookedPlan(const ReadArguments& arguments);

/// Of the picture, or of the shot as a command line has it.
std::string lookedName(const ReadArguments& arguments);

/// All of them, for a question about names.
std::vector<std::string> lookedFiles(const shots::SequencePlan& plan);

/// What a frame is called among others: its number, or its place from 1 on.
int64_t lookedNumber(const shots::SequencePlan& plan, std::size_t index);

/// How their files are taken.
struct LookForm {
    std::optional<pictures::AlphaKind> alphaKind; ///< whatever they say
    bool linear = false;                          ///< their colours are linear light
    pictures::DecodeOptions decoding;
};

/// Calls `look` with each picture, in the colours that are shown. Tells what a file's packing has disturbed. Throws Failure for a picture that cannot be read, and
/// where there is not enough memory for it.
void lookAtAll(const shots::SequencePlan& plan, const LookForm& form,
               const std::function<void(const pictures::Picture& picture, std::size_t index)>& look);

} // namespace kovalune::cli
