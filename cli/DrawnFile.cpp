#include "cli/DrawnFile.h"

#include "cli/AtomicFile.h"
#include "cli/Failure.h"
#include "cli/picture/PictureConversion.h"
#include "cli/picture/PictureFile.h"

namespace kovalune {

namespace {

Picture withSampleType(const Picture& drawn, SampleType type) {
    const host::Image image = imageOf(drawn, workingFormat(type));
    return pictureOf(image, image, drawn, {type, drawn.alphaKind});
}

} // namespace

FileFormat checkDrawnFile(const std::filesystem::path& file, const std::vector<std::string>& others,
                          bool force) {
    const FileFormat format = checkedOutputFormat(file, force);
    for (const std::string& other : others) {
        if (nameOneFile(file, other)) {
            throw Failure(ExitCode::kUsage, "cannot write " + inQuotes(file.string()) +
                                                ": it is the picture " + inQuotes(other) +
                                                " of this command");
        }
    }
    return format;
}

std::vector<uint8_t> encodeDrawn(const std::filesystem::path& file, const Picture& drawn, SampleType wanted) {
    const FileFormat format = formatOfName(file).value();
    const SampleType type = sampleTypeIn(format, wanted);
    return type == drawn.sampleType ? encodePicture(format, drawn)
                                    : encodePicture(format, withSampleType(drawn, type));
}

} // namespace kovalune
