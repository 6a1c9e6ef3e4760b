#include "cli/SheetCommand.h"

#include "cli/AtomicFile.h"
#include "cli/DrawnFile.h"
#include "cli/EffectSettings.h"
#include "cli/Failure.h"
#include "cli/FrameRender.h"
#include "cli/ParamLabel.h"
#include "cli/ParamText.h"
#include "cli/PictureMemory.h"
#include "cli/SheetLayout.h"
#include "cli/picture/Canvas.h"
#include "cli/picture/PictureFile.h"
#include "cli/picture/TextDrawing.h"

#include <algorithm>
#include <utility>

namespace kovalune {

namespace {

constexpr DrawnColor kBackground = {96, 96, 96};
constexpr DrawnColor kText = {240, 240, 240};
constexpr DrawnColor kDarkSquare = {112, 112, 112};
constexpr DrawnColor kLightSquare = {160, 160, 160};

struct View {
    int param = 0; // the index of the parameter that has the views
    A_long value = 0;
    std::string name;
};

// Those that can be chosen.
std::vector<View> viewsOf(const host::Session& session) {
    const int index = findSettable(session.params(), kViewLabel);
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    const std::vector<std::string> choices = session.choices(index);
    std::vector<View> views;
    for (const A_long value : choosable(def, choices))
        views.push_back({index, value, valueText(def, choices, value)});
    if (views.empty())
        throw Failure(ExitCode::Usage, "the effect has no views to draw");
    return views;
}

SheetLayout layoutFor(const std::vector<View>& views, const SourceFrame& source) {
    std::int64_t textWidth = 0;
    for (const View& view : views)
        textWidth = std::max(textWidth, textSize(view.name, 1).width);
    const SheetLayout layout =
        sheetLayout(views.size(), source.picture.width, source.picture.height, textWidth, kMostPixelsASide);
    if (std::max(layout.width(), layout.height()) > std::int64_t{kMostPixelsASide})
        throw Failure(ExitCode::File, "the sheet of " + inQuotes(source.name) + " would be " +
                                          std::to_string(layout.width()) + " x " +
                                          std::to_string(layout.height()) + " pixels; a side has at most " +
                                          std::to_string(kMostPixelsASide));
    return layout;
}

// All views on a canvas whose samples have this type.
Picture drawnSheet(OpenEffect& effect, const std::vector<View>& views, const SourceFrame& source,
                   const FrameArguments& arguments, SampleType type) {
    const SheetLayout layout = layoutFor(views, source);
    Canvas canvas(static_cast<std::uint32_t>(layout.width()), static_cast<std::uint32_t>(layout.height()),
                  kBackground, type);
    for (std::size_t cell = 0; cell < views.size(); ++cell) {
        const auto& [param, value, name] = views[cell];
        effect.session().setValue(param, value);
        const host::Image result = renderFrame(effect, source, arguments, name);
        const Picture drawn = pictureOf(result, source.image, source.picture, {type, AlphaKind::Straight});
        const Area place = {layout.left(cell), layout.top(cell) + layout.lineHeight, drawn.width,
                            drawn.height};
        drawText(canvas, place.left, layout.top(cell), name, kText, layout.textScale);
        if (hasAlpha(drawn.channels))
            canvas.checker(place, (layout.margin + 1) / 2, kDarkSquare, kLightSquare);
        canvas.draw(drawn, place.left, place.top);
    }
    return std::move(canvas).picture();
}

void drawFile(OpenEffect& effect, const std::vector<View>& views, const SheetArguments& arguments,
              FileFormat format) {
    const SourceFrame source = readFrame(arguments.input, arguments.frame);
    const SampleType type = outputForm(source.picture, format, arguments.frame).sampleType;
    const SampleType drawn = type == SampleType::Half ? SampleType::Float : type;
    const Picture sheet = drawnSheet(effect, views, source, arguments.frame, drawn);
    writeAtomically(arguments.output, encodeDrawn(arguments.output, sheet, type));
    noteLeftOut(source);
}

} // namespace

void runSheet(const SheetArguments& arguments) {
    const FileFormat format = checkDrawnFile(arguments.output, {arguments.input}, arguments.force);
    OpenEffect effect = openEffect(arguments.effect);
    const std::vector<View> views = viewsOf(effect.session());
    applySettings(effect.session(), arguments.effect, views.front().name);
    withMemoryFor(arguments.input, [&] { drawFile(effect, views, arguments, format); });
}

} // namespace kovalune
