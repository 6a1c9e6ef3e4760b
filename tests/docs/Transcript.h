// The transcripts of a document: blocks of Markdown that are marked as console text, with commands and what they print.
//
//     ```console          what is printed is compared to the letter
//     ```console varies   numbers that depend on the machine and the moment do not count
//
// A line that starts with "$ " is a command, which goes on in the next line where it ends with a backslash; what follows up to
// the next command is what it prints, on standard output and standard error.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kovalune::test {

struct TranscriptCommand {
    int line = 0;        ///< of the document
    std::string command; ///< for a shell
    std::string printed; ///< lines, each with its end
    bool varies = false;
};

/// Of a whole document, in their order. Throws std::runtime_error, with the place, for a document that cannot be read, a block
/// that does not end, text before a block's first command, and commands in a block that is not marked.
std::vector<TranscriptCommand> transcriptOf(const std::filesystem::path& document);

/// With '#' for every number.
std::string withoutNumbers(const std::string& text);

} // namespace kovalune::test
