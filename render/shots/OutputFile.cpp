#include "render/shots/OutputFile.h"

#include "pictures/EmbeddedSettings.h"
#include "pictures/FileBytes.h"
#include "pictures/PictureFile.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>
#include <unistd.h>
#include <vector>

namespace kovalune::shots {

namespace {

/// "cannot write 'x.png' with --option value: PNG files have a, b or c"
[[noreturn]] void refuse(const std::filesystem::path& output, const std::string& option,
                         pictures::FileFormat format, const std::vector<std::string>& has) {
    throw text::Failure(text::FailureKind::kUsage,
                        "cannot write " + text::inQuotes(output.string()) + " with " + option + ": " +
                            pictures::formatName(format) + " files have " + text::oneOf(has));
}

void checkType(const std::filesystem::path& output, pictures::FileFormat format,
               pictures::SampleType wanted) {
    std::vector<std::string> words;
    for (const pictures::SampleType type : pictures::sampleTypesOf(format)) {
        if (type == wanted) {
            return;
        }
        words.emplace_back(pictures::sampleTypeWord(type));
    }
    refuse(output, std::string("--out-depth ") + pictures::sampleTypeWord(wanted), format, words);
}

void checkCompression(const std::filesystem::path& output, pictures::FileFormat format,
                      const std::string& wanted) {
    const std::vector<std::string> known = pictures::compressionsOf(format);
    if (std::find(known.begin(), known.end(), wanted) != known.end()) {
        return;
    }
    refuse(output, "--compression " + wanted, format,
           known.empty() ? std::vector<std::string>{"--png-level instead"} : known);
}

constexpr char kStreamName[] = "standard output";

/// "png, tif, exr or tga"
std::string formatWords() {
    using pictures::FileFormat;
    std::vector<std::string> words;
    for (const FileFormat format :
         {FileFormat::kPng, FileFormat::kTiff, FileFormat::kExr, FileFormat::kTga}) {
        words.emplace_back(pictures::formatWord(format));
    }
    return text::oneOf(words);
}

pictures::FileFormat checkedStreamFormat(const FrameForm& form) {
    const std::string start = "cannot write to the standard output: ";
    if (!form.outFormat) {
        throw text::Failure(text::FailureKind::kUsage,
                            start + "--format has to say what is written: " + formatWords());
    }
    if (::isatty(STDOUT_FILENO) != 0) {
        throw text::Failure(text::FailureKind::kUsage,
                            start + "it is a terminal; lead it to a file or to a program");
    }
    pictures::checkBuiltIn(*form.outFormat, "to the standard output");
    return *form.outFormat;
}

void writeToStream(std::span<const uint8_t> bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size() || std::fflush(stdout) != 0) {
        const int error = errno;
        throw text::Failure(text::FailureKind::kFile,
                            "cannot write to the standard output: " + text::systemReason(error));
    }
}

} // namespace

void checkForm(const std::filesystem::path& output, pictures::FileFormat format, const FrameForm& form) {
    if (form.outType) {
        checkType(output, format, *form.outType);
    }
    if (!form.encoding.compression.empty()) {
        checkCompression(output, format, form.encoding.compression);
    }
    if (form.embeds && !pictures::canEmbedSettings(format)) {
        refuse(output, "--embed", format, {"no place for settings"});
    }
}

bool isStandardOutput(const std::filesystem::path& output) {
    return output == pictures::kStream;
}

pictures::FileFormat outputFormat(const std::filesystem::path& output, const FrameForm& form) {
    if (isStandardOutput(output)) {
        const pictures::FileFormat format = checkedStreamFormat(form);
        checkForm(kStreamName, format, form);
        return format;
    }
    if (form.outFormat) {
        throw text::Failure(
            text::FailureKind::kUsage,
            "cannot write " + text::inQuotes(output.string()) +
                " with --format: it is for the standard output (-o -); the end of a name says "
                "what is written");
    }
    const pictures::FileFormat format = pictures::formatToWrite(output);
    checkForm(output, format, form);
    return format;
}

pictures::FileFormat checkedOutputFormat(const std::filesystem::path& output, bool force,
                                         const FrameForm& form) {
    const pictures::FileFormat format = outputFormat(output, form);
    if (!isStandardOutput(output)) {
        checkWritable(output, force);
    }
    return format;
}

void checkReplacesNone(const std::filesystem::path& file, const std::vector<std::string>& others,
                       const std::string& what) {
    for (const std::string& other : others) {
        const bool isStream = isStandardOutput(file) || isStandardOutput(other);
        if (!isStream && nameOneFile(file, other)) {
            throw text::Failure(text::FailureKind::kUsage, "cannot write " + text::inQuotes(file.string()) +
                                                               ": it is " + what + ' ' +
                                                               text::inQuotes(other) + " of this command");
        }
    }
}

void writeOutputs(std::span<const FileContent> outputs) {
    std::vector<FileContent> files;
    for (const FileContent& each : outputs) {
        if (!isStandardOutput(each.file)) {
            files.push_back(each);
        }
    }
    if (!files.empty()) {
        writeAtomically(files);
    }
    for (const FileContent& each : outputs) {
        if (isStandardOutput(each.file)) {
            writeToStream(each.bytes);
        }
    }
}

void writeOutput(const std::filesystem::path& output, std::span<const uint8_t> bytes) {
    const FileContent content{output, bytes};
    writeOutputs({&content, 1});
}

} // namespace kovalune::shots
