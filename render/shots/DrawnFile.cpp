#include "render/shots/DrawnFile.h"

#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"
#include "render/shots/OutputFile.h"

namespace kovalune::shots {

namespace {

pictures::Picture withSampleType(const pictures::Picture& drawn, pictures::SampleType type) {
    const host::Image image = pictures::imageOf(drawn, pictures::workingFormat(type));
    return pictures::pictureOf(image, image, drawn, {type, drawn.alphaKind});
}

} // namespace

pictures::FileFormat checkDrawnFile(const std::filesystem::path& file, const std::vector<std::string>& others,
                                    bool force, const FrameForm& form) {
    const pictures::FileFormat format = checkedOutputFormat(file, force, form);
    checkReplacesNone(file, others, "the picture");
    return format;
}

std::vector<uint8_t> encodeDrawn(const std::filesystem::path& file, const pictures::Picture& drawn,
                                 pictures::SampleType wanted, const pictures::EncodeOptions& options) {
    return encodeDrawn(pictures::formatOfName(file).value(), drawn, wanted, options);
}

std::vector<uint8_t> encodeDrawn(pictures::FileFormat format, const pictures::Picture& drawn,
                                 pictures::SampleType wanted, const pictures::EncodeOptions& options) {
    const pictures::SampleType type = pictures::sampleTypeIn(format, wanted);
    return type == drawn.sampleType ? pictures::encodePicture(format, drawn, options)
                                    : pictures::encodePicture(format, withSampleType(drawn, type), options);
}

} // namespace kovalune::shots
