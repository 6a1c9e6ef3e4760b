#include "cli/SheetCommand.h"

#include "cli/AtomicFile.h"
#include "cli/DrawnFile.h"
#include "cli/EffectSettings.h"
#include "cli/EffectStages.h"
#include "cli/Failure.h"
#include "cli/FrameRender.h"
#include "cli/ParamLabel.h"
#include "cli/ParamText.h"
#include "cli/PictureMemory.h"
#include "cli/RememberedDefaults.h"
#include "cli/Selection.h"
#include "cli/SheetLayout.h"
#include "cli/StandardOutput.h"
#include "cli/picture/Canvas.h"
#include "cli/picture/PictureFile.h"
#include "cli/picture/TextDrawing.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace kovalune {

namespace {

constexpr DrawnColor kBackground = {96, 96, 96};
constexpr DrawnColor kText = {240, 240, 240};
constexpr DrawnColor kDarkSquare = {112, 112, 112};
constexpr DrawnColor kLightSquare = {160, 160, 160};

struct View {
    int param = 0; ///< the index of the parameter that has the views
    A_long value = 0;
    std::string name;
    bool isOff = false; ///< it would show a stage that is switched off
};

/// By the settings as they are.
void labelOff(const host::Session& session, std::vector<View>& views) {
    for (View& view : views) {
        view.isOff = offStageOf(session, view.name).has_value();
        if (view.isOff) {
            view.name += " (off)";
        }
    }
}

/// Those that can be chosen.
std::vector<View> viewsOf(const host::Session& session) {
    const int index = findSettable(session.params(), kViewLabel);
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    const std::vector<std::string> choices = session.choices(index);
    std::vector<View> views;
    for (const A_long value : choosable(def, choices)) {
        views.push_back({index, value, valueText(def, choices, value), false});
    }
    if (views.empty()) {
        throw Failure(ExitCode::kUsage, "the effect has no views to draw");
    }
    return views;
}

SheetLayout layoutFor(const std::vector<View>& views, const SourceFrame& source) {
    int64_t textWidth = 0;
    for (const View& view : views) {
        textWidth = std::max(textWidth, textSize(view.name, 1).width);
    }
    const SheetLayout layout =
        sheetLayout(views.size(), source.picture.width, source.picture.height, textWidth, kMostPixelsASide);
    if (std::max(layout.width(), layout.height()) > int64_t{kMostPixelsASide}) {
        throw Failure(ExitCode::kFile, "the sheet of " + inQuotes(source.name) + " would be " +
                                           std::to_string(layout.width()) + " x " +
                                           std::to_string(layout.height()) + " pixels; a side has at most " +
                                           std::to_string(kMostPixelsASide));
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
        frames.push_back(progressFrame(session, arguments, printable(view.name)));
    }
    return frames;
}

void tellSelection(const host::Session& session, const SheetArguments& arguments, const NamedParams& named,
                   const std::optional<FrameReport>& counts) {
    const std::vector<std::string> notes = selectionNotes(session, named, counts);
    tellNotes(notes, counts, arguments.report);
    if (arguments.report.report) {
        printOut(selectionText(session, counts, notes, arguments.report.json));
    }
    checkStrict(notes, arguments.report, arguments.output);
}

/// All views on a canvas whose samples have this type.
Picture drawnSheet(OpenEffect& effect, const std::vector<View>& views, const SourceFrame& source,
                   const SheetArguments& arguments, const NamedParams& named, SampleType type) {
    const SheetLayout layout = layoutFor(views, source);
    Canvas canvas(static_cast<uint32_t>(layout.width()), static_cast<uint32_t>(layout.height()), kBackground,
                  type);
    ProgressLine progress(progressFrames(effect.session(), views, arguments.frame), pixelsOf(source),
                          arguments.frame.quiet);
    for (std::size_t cell = 0; cell < views.size(); ++cell) {
        const View& view = views[cell];
        const Area place = {layout.left(cell), layout.top(cell) + layout.lineHeight, source.picture.width,
                            source.picture.height};
        drawText(canvas, place.left, layout.top(cell), view.name, kText, layout.textScale);
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
            renderFrame(effect, source, arguments.frame, progress, counts ? &*counts : nullptr);
        progress.nextFrame();
        if (cell == 0) {
            tellSelection(effect.session(), arguments, named, counts);
        }
        const Picture drawn = pictureOf(result, source.image, source.picture, {type, AlphaKind::kStraight});
        if (hasAlpha(drawn.channels)) {
            canvas.checker(place, (layout.margin + 1) / 2, kDarkSquare, kLightSquare);
        }
        canvas.draw(drawn, place.left, place.top);
    }
    return std::move(canvas).picture();
}

void drawFile(OpenEffect& effect, const std::vector<View>& views, const SheetArguments& arguments,
              const NamedParams& named, FileFormat format) {
    const SourceFrame source = readFrame(arguments.input, arguments.frame);
    const SampleType type = outputForm(source.picture, format, arguments.frame).sampleType;
    const SampleType drawn = type == SampleType::kHalf ? SampleType::kFloat : type;
    const Picture sheet = drawnSheet(effect, views, source, arguments, named, drawn);
    writeAtomically(arguments.output, encodeDrawn(arguments.output, sheet, type));
    noteLeftOut(source);
}

} // namespace

void runSheet(const SheetArguments& arguments) {
    const FileFormat format = checkDrawnFile(arguments.output, {arguments.input}, arguments.force);
    const RememberedDefaults remembered = RememberedDefaults::forAllViews(arguments.effect);
    OpenEffect effect = openEffect(arguments.effect);
    std::vector<View> views = viewsOf(effect.session());
    const NamedParams named = applySettings(effect.session(), arguments.effect, views.front().name);
    labelOff(effect.session(), views);
    withMemoryFor(arguments.input, [&] { drawFile(effect, views, arguments, named, format); });
    if (!arguments.frame.quiet) {
        remembered.tellIfTheyCount(effect.session());
    }
}

} // namespace kovalune
