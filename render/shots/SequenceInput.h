// What the INPUTs of a command line stand for: one picture, the numbered pictures of a sequence, or pictures without numbers.
#pragma once

#include "render/shots/FramePattern.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::shots {

/// Pictures are those whose names end as pictures' do; others in a folder, and hidden ones, are passed over.
struct SequenceInput {
    /// Of a sequence. Its frames are those on disk, by their number.
    std::optional<FramePattern> pattern;
    std::vector<int64_t> frames;

    /// Of all else, as they were given or, of a folder, by their names.
    std::vector<std::string> pictures;

    bool isSequence() const { return pattern.has_value(); }
    bool isOnePicture() const { return !pattern && pictures.size() == 1 && !fromFolder; }

    bool fromFolder = false;
};

/// One name is that of a picture, of a folder or a pattern; a picture that exists under the very name is that picture. Several
/// are pictures, a sequence where their names differ in one number alone. Throws Failure where a pattern or a folder has no
/// picture, a folder has those of several sequences, or one of several names is a folder or a pattern.
SequenceInput sequenceInput(const std::vector<std::string>& names);

} // namespace kovalune::shots
