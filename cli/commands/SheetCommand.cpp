#include "cli/Commands.h"

#include "cli/commands/EffectSettings.h"
#include "cli/commands/RememberedDefaults.h"
#include "cli/commands/RenderPicture.h"
#include "cli/files/SheetLayout.h"
#include "cli/text/SelectionText.h"
#include "cli/text/StandardOutput.h"
#include "effect/Kovalune.h"
#include "pictures/AreaMean.h"
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
#include "render/shots/OutputFile.h"
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
constexpr int64_t kPatchSide = 9;  // dots of the letters
constexpr int64_t kPatchDots = 14; // with the room beside it

struct View {
    int param = 0; ///< the index of the parameter that has the views
    A_long value = 0;
    std::string name;
    std::optional<std::size_t> stage; ///< that it shows
    bool isOff = false;               ///< it would show a stage that is switched off
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

std::optional<std::size_t> stageOf(const std::string& view) {
    for (std::size_t stage = 0; stage < kStageCount; ++stage) {
        if (view == render::stageName(stage)) {
            return stage;
        }
    }
    return std::nullopt;
}

/// Those that can be chosen.
std::vector<View> viewsOf(const host::Session& session) {
    const int index = render::findSettable(session.params(), render::kViewLabel);
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    const std::vector<std::string> choices = session.choices(index);
    std::vector<View> views;
    for (const A_long value : render::choosable(def, choices)) {
        const std::string name = render::valueText(def, choices, value);
        views.push_back({index, value, name, stageOf(name), false});
    }
    if (views.empty()) {
        throw text::Failure(text::FailureKind::kUsage, "the effect has no views to draw");
    }
    return views;
}

/// The ones of these names, in their order; all where there are none.
std::vector<View> chosenViews(const host::Session& session, const std::vector<View>& all,
                              const std::vector<std::string>& names) {
    std::vector<View> chosen;
    for (const std::string& name : names) {
        const PF_ParamDef& def = session.params()[static_cast<std::size_t>(all.front().param)];
        const auto value =
            std::get<A_long>(render::parseValue(def, session.choices(all.front().param), name));
        chosen.push_back(
            *std::find_if(all.begin(), all.end(), [value](const View& view) { return view.value == value; }));
    }
    return names.empty() ? all : chosen;
}

/// The colours of the view's stage that are switched on, with their labels.
std::vector<std::size_t> shownColors(const host::Session& session, const View& view) {
    std::vector<std::size_t> colors;
    for (std::size_t color = 0; view.stage && !view.isOff && color < render::colorsOf(*view.stage); ++color) {
        if (render::isOn(session, render::colorSwitch(*view.stage, color)) == true) {
            colors.push_back(color);
        }
    }
    return colors;
}

/// "#3264B4 118822"
std::string captionOf(const host::Session& session, const View& view, std::size_t color,
                      const std::optional<FrameReport>& counts) {
    const std::string name = render::colorText(session, render::colorLabel(*view.stage, color));
    return counts ? name + ' ' + std::to_string(counts->stages[*view.stage].selected[color]) : name;
}

SheetContent contentOf(const host::Session& session, const std::vector<View>& views,
                       const shots::SourceFrame& source) {
    SheetContent content{
        .count = views.size(), .width = source.picture.width, .height = source.picture.height};
    const std::string mostPixels = "#000000 " + std::to_string(source.pixels());
    for (const View& view : views) {
        content.textWidth = std::max(content.textWidth, pictures::textSize(view.name, 1).width);
        const std::size_t colors = shownColors(session, view).size();
        if (colors > 0) {
            content.textWidth =
                std::max(content.textWidth, kPatchDots + pictures::textSize(mostPixels, 1).width);
            content.textLines = std::max(content.textLines, static_cast<int64_t>(1 + colors));
        }
    }
    return content;
}

SheetLayout layoutFor(const SheetContent& content, const SheetArguments& arguments) {
    SheetForm form{.columns = static_cast<std::size_t>(arguments.columns), .scale = arguments.scale};
    form.mostWidth = arguments.width > 0 ? arguments.width
                     : arguments.scale   ? kWidestSheet
                                         : kUsualSheetWidth;
    const SheetLayout layout = sheetLayout(content, form);
    if (arguments.width > 0 && layout.width() > form.mostWidth) {
        throw text::Failure(text::FailureKind::kUsage, "--width: " + std::to_string(layout.columns) +
                                                           " views beside each other need " +
                                                           std::to_string(layout.width()) + " pixels, not " +
                                                           std::to_string(arguments.width));
    }
    const int64_t mostHeight = kWidestSheet;
    if (layout.width() > form.mostWidth || layout.height() > mostHeight) {
        throw text::Failure(text::FailureKind::kFile,
                            "the sheet of " + text::inQuotes(arguments.input) + " would be " +
                                std::to_string(layout.width()) + " x " + std::to_string(layout.height()) +
                                " pixels; it has at most " + std::to_string(form.mostWidth) + " x " +
                                std::to_string(mostHeight));
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

/// Renders and draws views one by one.
class SheetDrawing {
public:
    /// `all`: the views that there are; the notes go by the first, in which all stages run. `type`: of the canvas.
    SheetDrawing(render::OpenEffect& effect, const std::vector<View>& all, const std::vector<View>& chosen,
                 const shots::SourceFrame& source, const SheetArguments& arguments,
                 const render::NamedParams& named, pictures::SampleType type)
        : effect_(effect), first_(all.front()), views_(chosen), source_(source), arguments_(arguments),
          named_(named), layout_(layoutFor(contentOf(effect.session(), chosen, source), arguments)),
          canvas_(static_cast<uint32_t>(layout_.width()), static_cast<uint32_t>(layout_.height()),
                  kBackground, type),
          progress_(progressFrames(effect.session(), rendered(), arguments.frame), source.pixels(),
                    arguments.frame.quiet) {}

    pictures::Picture drawn() && {
        if (!isDrawn(first_)) {
            renderView(first_);
        }
        for (std::size_t cell = 0; cell < views_.size(); ++cell) {
            drawCell(cell);
        }
        return std::move(canvas_).picture();
    }

private:
    struct Rendered {
        host::Image image;
        std::optional<FrameReport> counts;
    };

    bool isDrawn(const View& view) const {
        return std::any_of(views_.begin(), views_.end(),
                           [&view](const View& each) { return each.value == view.value; });
    }

    std::vector<View> rendered() const {
        std::vector<View> views;
        if (!isDrawn(first_)) {
            views.push_back(first_);
        }
        views.insert(views.end(), views_.begin(), views_.end());
        return views;
    }

    Rendered renderView(const View& view) {
        effect_.session().setValue(view.param, view.value);
        Rendered result;
        if (!arguments_.effect.plugin) {
            const bool isFirst = view.value == first_.value;
            result.counts = FrameReport{.countsChanges = isFirst && arguments_.report.report};
        }
        result.image = renderPicture(effect_, source_.name, source_.image, arguments_.frame, progress_,
                                     result.counts ? &*result.counts : nullptr);
        progress_.nextFrame();
        if (view.value == first_.value && !told_) {
            told_ = true;
            tellSelection(effect_.session(), arguments_, named_, result.counts);
        }
        return result;
    }

    void drawCell(std::size_t cell) {
        const View& view = views_[cell];
        const pictures::Area place = {layout_.left(cell), layout_.top(cell) + layout_.captionHeight,
                                      layout_.pictureWidth, layout_.pictureHeight};
        pictures::drawText(canvas_, place.left, layout_.top(cell), view.name, kText, layout_.textScale);
        if (view.isOff) {
            drawGround(place);
            return;
        }
        const Rendered result = renderView(view);
        drawCaption(cell, result.counts);
        drawPicture(result.image, place);
    }

    void drawGround(const pictures::Area& place) {
        canvas_.checker(place, (layout_.margin + 1) / 2, kDarkSquare, kLightSquare);
    }

    void drawPicture(const host::Image& image, const pictures::Area& place) {
        pictures::Picture drawn =
            pictures::pictureOf(image, source_.image, source_.picture,
                                {canvas_.picture().sampleType, pictures::AlphaKind::kStraight});
        if (place.width != int64_t{drawn.width} || place.height != int64_t{drawn.height}) {
            drawn = pictures::shrunk(drawn, static_cast<uint32_t>(place.width),
                                     static_cast<uint32_t>(place.height));
        }
        if (pictures::hasAlpha(drawn.channels)) {
            drawGround(place);
        }
        canvas_.draw(drawn, place.left, place.top);
    }

    /// Below the view's name a line a colour: a patch, the colour, the pixels that match it.
    void drawCaption(std::size_t cell, const std::optional<FrameReport>& counts) {
        const View& view = views_[cell];
        int64_t top = layout_.top(cell);
        for (const std::size_t color : shownColors(effect_.session(), view)) {
            top += layout_.lineHeight;
            const int64_t left = layout_.left(cell);
            const int64_t side = kPatchSide * layout_.textScale;
            const std::string label = render::colorLabel(*view.stage, color);
            const std::optional<int> index = effect_.session().findParam(label);
            const auto value = std::get<PF_Pixel>(effect_.session().value(index.value()));
            canvas_.fill({left, top, side, side}, {value.red, value.green, value.blue});
            pictures::drawText(canvas_, left + kPatchDots * layout_.textScale, top,
                               captionOf(effect_.session(), view, color, counts), kText, layout_.textScale);
        }
    }

    render::OpenEffect& effect_;
    const View& first_;
    const std::vector<View>& views_;
    const shots::SourceFrame& source_;
    const SheetArguments& arguments_;
    const render::NamedParams& named_;
    SheetLayout layout_;
    pictures::Canvas canvas_;
    ProgressLine progress_;
    bool told_ = false;
};

void drawFile(render::OpenEffect& effect, const std::vector<View>& all, const std::vector<View>& chosen,
              const SheetArguments& arguments, const render::NamedParams& named,
              pictures::FileFormat format) {
    const shots::SourceFrame source = shots::readFrame(arguments.input, arguments.frame.form);
    const pictures::SampleType type =
        shots::outputForm(source.picture, format, arguments.frame.form).sampleType;
    const pictures::SampleType drawn =
        type == pictures::SampleType::kHalf ? pictures::SampleType::kFloat : type;
    const pictures::Picture sheet =
        SheetDrawing(effect, all, chosen, source, arguments, named, drawn).drawn();
    shots::writeOutput(arguments.output,
                       shots::encodeDrawn(format, sheet, type, arguments.frame.form.encoding));
    noteLeftOut(source);
}

} // namespace

void runSheet(const SheetArguments& arguments) {
    const pictures::FileFormat format =
        shots::checkDrawnFile(arguments.output, {arguments.input}, arguments.force, arguments.frame.form);
    const RememberedDefaults remembered = RememberedDefaults::forAllViews(arguments.effect);
    render::OpenEffect effect = openEffect(arguments.effect);
    const std::vector<View> all = viewsOf(effect.session());
    std::vector<View> chosen = chosenViews(effect.session(), all, arguments.views);
    const render::NamedParams named = applySettings(effect.session(), arguments.effect, all.front().name);
    labelOff(effect.session(), chosen);
    pictures::withMemoryFor(arguments.input,
                            [&] { drawFile(effect, all, chosen, arguments, named, format); });
    if (!arguments.frame.quiet) {
        remembered.tellIfTheyCount(effect.session());
    }
}

} // namespace kovalune::cli
