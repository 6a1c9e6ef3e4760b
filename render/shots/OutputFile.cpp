#include "render/shots/OutputFile.h"

#include "pictures/PictureFile.h"
#include "render/shots/AtomicFile.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <string>
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

} // namespace

void checkForm(const std::filesystem::path& output, pictures::FileFormat format, const FrameForm& form) {
    if (form.outType) {
        checkType(output, format, *form.outType);
    }
    if (!form.encoding.compression.empty()) {
        checkCompression(output, format, form.encoding.compression);
    }
}

pictures::FileFormat checkedOutputFormat(const std::filesystem::path& output, bool force,
                                         const FrameForm& form) {
    const pictures::FileFormat format = pictures::formatToWrite(output);
    checkForm(output, format, form);
    checkWritable(output, force);
    return format;
}

} // namespace kovalune::shots
