// A picture of a file on its way to the effect, and what its result is written as.
#pragma once

#include "host/Image.h"
#include "pictures/Picture.h"
#include "pictures/PictureConversion.h"
#include "render/shots/FrameForm.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::shots {

/// A picture as its file holds it and as the effect gets it.
struct SourceFrame {
    std::string name; ///< for messages
    pictures::Picture picture;
    host::Image image;

    uint64_t pixels() const { return uint64_t{picture.width} * picture.height; }
};

/// Throws Failure for a file that cannot be read.
SourceFrame readFrame(const std::string& file, const FrameForm& form);

/// Of the picture that is written to a file of this format, which has the form's type of samples.
pictures::PictureForm outputForm(const pictures::Picture& source, pictures::FileFormat format,
                                 const FrameForm& form);

/// What the file has and the picture has not; with `format`, also what a file of that format cannot take over.
std::vector<std::string> leftOutOf(const pictures::Picture& source,
                                   std::optional<pictures::FileFormat> format = std::nullopt);

/// What is to be told of a picture whose file has disturbed its colours: "JPEG, packed with losses that ...".
std::optional<std::string> lossesOf(const pictures::Picture& source);

} // namespace kovalune::shots
