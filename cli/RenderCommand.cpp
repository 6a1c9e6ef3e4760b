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
        setParameter(session, kViewLabel, *arguments.view);
}

// What the command line sets has been looked at by now; what is refused here was remembered.
void refuseDefaults(const host::Session& session) {
    const int count = static_cast<int>(session.params().size());
    for (int index = 1; index < count; ++index) {
        const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
        if (def.param_type != PF_Param_POPUP)
            continue;
        const std::string refusal = choiceRefusal(def, session.choices(index), session.value(index));
        if (refusal.empty())
            continue;
        const bool isView = equalWithoutCase(def.name, kViewLabel);
        throw Failure(ExitCode::Usage, refusal + "; this is the remembered default, which " +
                                           (isView ? "--view" : "--set") + " overrules");
    }
}

// By the road that the effect knows, in the depth of the file. `name` is for messages.
host::Image rendered(host::Session& session, const host::Image& image, const std::string& name) {
    if (image.format() == PF_PixelFormat_ARGB64 && (session.outFlags() & PF_OutFlag_DEEP_COLOR_AWARE) == 0)
        throw Failure(ExitCode::Effect, "the effect cannot work on pictures of 16 bits");
    host::RenderRequest request;
    if ((session.outFlags2() & PF_OutFlag2_SUPPORTS_SMART_RENDER) == 0)
        request.flow = host::RenderFlow::Legacy;
    host::Image output;
    host::RenderResult result;
    try {
        result = session.render(image, output, request);
    } catch (const host::HostError& reason) {
        throw Failure(ExitCode::File, "cannot render " + inQuotes(name) + ": " + reason.what());
    }
    requireSuccess(result, "the effect");
    if (!result.rendered)
        throw Failure(ExitCode::Effect, "the effect promised no pixel of the picture that it was to render");
    return output;
}

Picture renderedPicture(host::Session& session, const Picture& picture, const std::string& name) {
    const host::Image image = imageOf(picture);
    return pictureOf(rendered(session, image, name), image, picture);
}

void renderFile(const RenderArguments& arguments) {
    const std::filesystem::path output(arguments.output);
    checkOutput(output);
    OpenEffect effect(arguments.plugin, arguments.threads);
    host::Session& session = effect.session();
    applySettings(session, arguments);
    refuseDefaults(session);
    const Picture result = renderedPicture(session, readPng(arguments.input), arguments.input);
    writeAtomically(output, encodePng(result));
}

} // namespace

void runRender(const RenderArguments& arguments) {
    // Made beforehand: there may be no memory for the words later.
    const Failure noMemory(ExitCode::File, "not enough memory for the picture " + inQuotes(arguments.input));
    try {
        renderFile(arguments);
    } catch (const std::bad_alloc&) {
        throw noMemory;
    }
}

} // namespace kovalune
