// The files of a frame vector: a small picture, the settings it is rendered with and the picture expected.
// Settings are lines LABEL=VALUE; a line that starts with '#' is a remark.
// A picture (*.kvw) is one text line "kovalune-world FORMAT WIDTH HEIGHT", then the pixels row by row without
// padding, four channels in the order alpha, red, green, blue, little-endian.
#pragma once

#include "host/Image.h"
#include "host/Session.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace kovalune::test {

struct FrameVector {
    std::string name;
    host::Image input;
    host::Image expected;
    std::map<std::string, std::string>
        settings; ///< by key; the labels of the parameters and a few of the host's

    int iterations() const;
    host::RenderRequest request() const;
    /// Sets every parameter that the settings name; throws for a name that the session does not know.
    void applyTo(host::Session& session) const;
};

/// Each throws std::runtime_error, with the file's name, for a file that is missing or damaged.
host::Image readPicture(const std::filesystem::path& file);
std::map<std::string, std::string> readSettings(const std::filesystem::path& file);
FrameVector readFrameVector(const std::filesystem::path& folder);

/// The names of the vectors below a folder, sorted; throws where there is none.
std::vector<std::string> vectorNames(const std::filesystem::path& folder);

/// Where two pictures differ first, and by what; empty where they are equal to the last bit.
std::string firstDifference(const host::Image& actual, const host::Image& expected);

} // namespace kovalune::test
