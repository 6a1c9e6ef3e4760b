// New vectors from the reference frame of the tests: a picture and settings, rendered by plain code that shares nothing with
// the effect's passes. A file so written says in its first line where it came from; the vectors that came with the project are
// from another reading, and only those are independent of these tests.
#pragma once

#include "tests/vectors/VectorFile.h"

namespace kovalune::test {

/// The first line of the settings of every vector that is written here.
inline constexpr char kOriginLine[] =
    "# Written by write_vector: the expected frame is the tests' own reference frame's";

/// What the reference frame makes of the vector's input with its settings. Throws std::runtime_error for a setting that the
/// effect does not have, one that is missing, and a value that is none.
host::Image referenceFrame(const FrameVector& vector);

/// Makes the folder, which must not be there yet, with the three files. Throws std::runtime_error with the file's name where one
/// cannot be written, and then leaves no folder behind.
void writeFrameVector(const std::filesystem::path& folder, const FrameVector& vector);

} // namespace kovalune::test
