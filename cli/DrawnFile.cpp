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

void checkDrawnFile(const std::filesystem::path& file, const std::vector<std::string>& others) {
    checkedOutputFormat(file);
    for (const std::string& other : others) {
        if (nameOneFile(file, other))
            throw Failure(ExitCode::Usage, "cannot write " + inQuotes(file.string()) +
                                               ": it is the picture " + inQuotes(other) + " of this command");
    }
}

void writeDrawn(const std::filesystem::path& file, const Picture& drawn, SampleType wanted) {
    const FileFormat format = checkedOutputFormat(file);
    const SampleType type = sampleTypeIn(format, wanted);
    writeAtomically(file, type == drawn.sampleType ? encodePicture(format, drawn)
                                                   : encodePicture(format, withSampleType(drawn, type)));
}

} // namespace kovalune
