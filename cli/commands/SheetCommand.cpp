#include "cli/Commands.h"

#include "cli/commands/EffectSettings.h"
#include "cli/commands/RememberedDefaults.h"
#include "cli/commands/RenderPicture.h"
#include "cli/files/SheetLayout.h"
#include "cli/text/SelectionText.h"
#include "cli/text/StandardOutput.h"
#include "pictures/Canvas.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "pictures/TextDrawing.h"
#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "render/SelectionNotes.h"
#include "render/Stages.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/DrawnFile.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace kovalune::cli {

namespace {

constexpr pictures::DrawnColor kBackground = {96, 96, 96};
constexpr pictures::DrawnColor kText = {240, 240, 240};
constexpr pictures::DrawnColor kDarkSquare = {112, 112, 112};
constexpr pictures::DrawnColor kLightSquare = {160, 160, 160};

struct View {
    int param = 0; ///< the index of the parameter that has the views
    A_long value = 0;
    std::string name;
    bool isOff = false; ///< it would show a stage that is switched off
};

/// By the settings as they are.
void labelOff(const host::Session& session, std::vector<View>& views) {
    for (View& view : views) {
        view.isOff = render::offStageOf(session, view.name).has_value();
        if (view.isOff) {
            view.name += " (off)";
        }
    }
}

/// Those that can be chosen.
std::vector<View> viewsOf(const host::Session& session) {
    const int index = render::findSettable(session.params(), render::kViewLabel);
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    const std::vector<std::string> choices = session.choices(index);
    std::vector<View> views;
    for (const A_long value : render::choosable(def, choices)) {
        views.push_back({index, value, render::valueText(def, choices, value), false});
    }
    if (views.empty()) {
        throw text::Failure(text::FailureKind::kUsage, "the effect has no views to draw");
    }
    return views;
}

SheetLayout layoutFor(const std::vector<View>& views, const shots::SourceFrame& source) {
    int64_t textWidth = 0;
    for (const View& view : views) {
        textWidth = std::max(textWidth, pictures::textSize(view.name, 1).width);
    }
    const SheetLayout layout = sheetLayout(views.size(), source.picture.width, source.picture.height,
                                           textWidth, pictures::kMostPixelsASide);
    if (std::max(layout.width(), layout.height()) > int64_t{pictures::kMostPixelsASide}) {
        throw text::Failure(text::FailureKind::kFile,
                            "the sheet of " + text::inQuotes(source.name) + " would be " +
                                std::to_string(layout.width()) + " x " + std::to_string(layout.height()) +
                                " pixels; a side has at most " + std::to_string(pictures::kMostPixelsASide));
    }
    return layout;
}

std::vector<ProgressFrame> progressFrames(host::Session& session, const std::vector<View>& views,
                                          const FrameArguments& arguments) {
    std::vector<ProgressFrame> frames;
    for (const View& view : views) {
        if (view.isOff) {
            continue;
        }
        session.setValue(view.param, view.value);
        frames.push_back(progressFrame(session, arguments, text::printable(view.name)));
    }
    return frames;
}

void tellSelection(const host::Session& session, const SheetArguments& arguments,
                   const render::NamedParams& named, const std::optional<FrameReport>& counts) {
    const std::vector<std::string> notes = render::selectionNotes(session, named, counts);
    tellNotes(notes, counts, arguments.report);
    if (arguments.report.report) {
        printOut(selectionText(session, counts, notes, arguments.report.json));
    }
    checkStrict(notes, arguments.report, arguments.output);
}

/// All views on a canvas whose samples have this type.
pictures::Picture drawnSheet(render::OpenEffect& effect, const std::vector<View>& views,
                             const shots::SourceFrame& source, const SheetArguments& arguments,
                             const render::NamedParams& named, pictures::SampleType type) {
    const SheetLayout layout = layoutFor(views, source);
    pictures::Canvas canvas(static_cast<uint32_t>(layout.width()), static_cast<uint32_t>(layout.height()),
                            kBackground, type);
    ProgressLine progress(progressFrames(effect.session(), views, arguments.frame), source.pixels(),
                          arguments.frame.quiet);
    for (std::size_t cell = 0; cell < views.size(); ++cell) {
        const View& view = views[cell];
        const pictures::Area place = {layout.left(cell), layout.top(cell) + layout.lineHeight,
                                      source.picture.width, source.picture.height};
        pictures::drawText(canvas, place.left, layout.top(cell), view.name, kText, layout.textScale);
        if (view.isOff) {
            canvas.checker(place, (layout.margin + 1) / 2, kDarkSquare, kLightSquare);
            continue;
        }
        effect.session().setValue(view.param, view.value);
        std::optional<FrameReport> counts;
        if (cell == 0 && !arguments.effect.plugin) { // in the first view all stages run
            counts = FrameReport{.countsChanges = arguments.report.report};
        }
        const host::Image result =
            renderPicture(effect, source, arguments.frame, progress, counts ? &*counts : nullptr);
        progress.nextFrame();
        if (cell == 0) {
            tellSelection(effect.session(), arguments, named, counts);
        }
        const pictures::Picture drawn =
            pictures::pictureOf(result, source.image, source.picture, {type, pictures::AlphaKind::kStraight});
        if (pictures::hasAlpha(drawn.channels)) {
            canvas.checker(place, (layout.margin + 1) / 2, kDarkSquare, kLightSquare);
        }
        canvas.draw(drawn, place.left, place.top);
    }
    return std::move(canvas).picture();
}

void drawFile(render::OpenEffect& effect, const std::vector<View>& views, const SheetArguments& arguments,
              const render::NamedParams& named, pictures::FileFormat format) {
    const shots::SourceFrame source = shots::readFrame(arguments.input, arguments.frame.form);
    const pictures::SampleType type =
        shots::outputForm(source.picture, format, arguments.frame.form).sampleType;
    const pictures::SampleType drawn =
        type == pictures::SampleType::kHalf ? pictures::SampleType::kFloat : type;
    const pictures::Picture sheet = drawnSheet(effect, views, source, arguments, named, drawn);
    shots::writeAtomically(arguments.output,
                           shots::encodeDrawn(arguments.output, sheet, type, arguments.frame.form.encoding));
    noteLeftOut(source);
}

} // namespace

void runSheet(const SheetArguments& arguments) {
    const pictures::FileFormat format =
        shots::checkDrawnFile(arguments.output, {arguments.input}, arguments.force);
    const RememberedDefaults remembered = RememberedDefaults::forAllViews(arguments.effect);
    render::OpenEffect effect = openEffect(arguments.effect);
    std::vector<View> views = viewsOf(effect.session());
    const render::NamedParams named = applySettings(effect.session(), arguments.effect, views.front().name);
    labelOff(effect.session(), views);
    pictures::withMemoryFor(arguments.input, [&] { drawFile(effect, views, arguments, named, format); });
    if (!arguments.frame.quiet) {
        remembered.tellIfTheyCount(effect.session());
    }
}

} // namespace kovalune::cli
