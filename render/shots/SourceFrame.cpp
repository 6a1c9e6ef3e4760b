#include "render/shots/SourceFrame.h"

#include "pictures/FileBytes.h"
#include "pictures/NoteConversion.h"
#include "pictures/PictureFile.h"
#include "render/RenderFrame.h"

namespace kovalune::shots {

namespace {

PF_PixelFormat formatFor(pictures::SampleType type, const FrameForm& form) {
    return form.depth ? render::formatOfDepth(*form.depth) : pictures::workingFormat(type);
}

} // namespace

SourceFrame readFrame(const std::string& file, const FrameForm& form) {
    SourceFrame frame;
    frame.name = pictures::readName(file);
    frame.picture = pictures::readPicture(file, form.decoding);
    if (form.alphaKind) {
        frame.picture.alphaKind = *form.alphaKind;
    }
    frame.picture.isLinear = form.linear;
    frame.image = pictures::imageOf(frame.picture, formatFor(frame.picture.sampleType, form));
    return frame;
}

pictures::PictureForm outputForm(const pictures::Picture& source, pictures::FileFormat format,
                                 const FrameForm& form) {
    pictures::PictureForm result;
    result.sampleType = source.sampleType;
    if (form.depth) {
        result.sampleType = pictures::sampleTypeFor(formatFor(source.sampleType, form), source.sampleType);
    }
    result.sampleType = form.outType ? *form.outType : pictures::sampleTypeIn(format, result.sampleType);
    result.alphaKind = form.alphaKind            ? *form.alphaKind
                       : format == source.format ? source.alphaKind
                                                 : pictures::usualAlphaKind(format);
    result.isLinear = source.isLinear;
    return result;
}

std::vector<std::string> leftOutOf(const pictures::Picture& source,
                                   std::optional<pictures::FileFormat> format) {
    std::vector<std::string> parts;
    if (format != source.format) {
        parts = source.passedOn;
    }
    parts.insert(parts.end(), source.leftOut.begin(), source.leftOut.end());
    if (format) {
        for (const std::string& part : pictures::notesLeftOut(*format, source)) {
            parts.push_back(part);
        }
    }
    return parts;
}

std::optional<std::string> lossesOf(const pictures::Picture& source) {
    if (!source.isLossy) {
        return std::nullopt;
    }
    return std::string(pictures::formatName(source.format)) +
           ", packed with losses that disturb flat colours: give colours a range above 0, as in \"Color 1 "
           "Range=2\"";
}

} // namespace kovalune::shots
