// The settings that a picture was rendered with, in its own notes: a text of PNG, the description of a TIFF (after what the user
// has there), an attribute of OpenEXR. TGA has no place for them.
#pragma once

#include "pictures/Picture.h"

#include <optional>
#include <string>
#include <vector>

namespace kovalune::pictures {

/// Whether files of this format have a place for them.
bool canEmbedSettings(FileFormat format);

/// As they were embedded; none where there are none.
std::optional<std::string> embeddedSettings(const Picture& picture);

/// Whether it holds just these, as withSettings has put them in.
bool holdsSettings(const Picture& picture, const std::string& settings);

/// Whether a note of this format is theirs alone, and not of the user's making.
bool isEmbeddedSettings(const PictureNote& note, FileFormat format);

/// The notes of this format without them: what is made of a picture was not made by its settings.
std::vector<PictureNote> withoutSettings(FileFormat format, const std::vector<PictureNote>& notes);

/// With these instead of others. `settings` is UTF-8 without a zero; the format has a place for them.
std::vector<PictureNote> withSettings(FileFormat format, const std::vector<PictureNote>& notes,
                                      const std::string& settings);

} // namespace kovalune::pictures
