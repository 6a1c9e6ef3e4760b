#include "cli/RenderCommand.h"

#include "cli/AsciiText.h"
#include "cli/AtomicFile.h"
#include "cli/Failure.h"
#include "cli/OpenEffect.h"
#include "cli/ParamLabel.h"
#include "cli/ParamText.h"
#include "cli/PictureConversion.h"
#include "cli/PngFile.h"
#include "hostapi/Constants.h"

#include <filesystem>
#include <new>

namespace kovalune {

namespace {

void checkOutput(const std::filesystem::path& output) {
    if (!equalWithoutCase(output.extension().string(), ".png"))
        throw Failure(ExitCode::File, "cannot write " + inQuotes(output.string()) +
                                          ": only PNG files are written, and their names end in .png");
    checkWritable(output);
}

void setParameter(host::Session& session, std::string_view label, std::string_view value) {
    const int index = findSettable(session.params(), trimmed(label));
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    session.setValue(index, parseValue(def, session.choices(index), value));
}

void applySettings(host::Session& session, const RenderArguments& arguments) {
    for (const std::string& setting : arguments.settings) {
        const std::size_t equals = setting.find('=');
        if (equals == std::string::npos)
            throw Failure(ExitCode::Usage, "--set takes LABEL=VALUE, not " + inQuotes(setting));
        const std::string_view text(setting);
        setParameter(session, text.substr(0, equals), text.substr(equals + 1));
    }
    if (arguments.view)
        setParameter(session, "View", *arguments.view);
}

// By the road that the effect knows, in the depth of the file.
host::Image rendered(host::Session& session, const host::Image& image) {
    if (image.format() == PF_PixelFormat_ARGB64 && (session.outFlags() & PF_OutFlag_DEEP_COLOR_AWARE) == 0)
        throw Failure(ExitCode::Effect, "the effect cannot work on pictures of 16 bits");
    host::RenderRequest request;
    if ((session.outFlags2() & PF_OutFlag2_SUPPORTS_SMART_RENDER) == 0)
        request.flow = host::RenderFlow::Legacy;
    host::Image output;
    requireSuccess(session.render(image, output, request), "the effect");
    return output;
}

Picture renderedPicture(host::Session& session, const Picture& picture) {
    const host::Image image = imageOf(picture);
    return pictureOf(rendered(session, image), image, picture);
}

} // namespace

void runRender(const RenderArguments& arguments) {
    const std::filesystem::path output(arguments.output);
    checkOutput(output);
    OpenEffect effect(arguments.plugin, arguments.threads);
    applySettings(effect.session(), arguments);
    try {
        const Picture result = renderedPicture(effect.session(), readPng(arguments.input));
        writeAtomically(output, encodePng(result));
    } catch (const std::bad_alloc&) {
        throw Failure(ExitCode::File, "not enough memory for the picture " + inQuotes(arguments.input));
    }
}

} // namespace kovalune
