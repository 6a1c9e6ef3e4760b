#include "cli/Commands.h"

#include "cli/commands/EffectSettings.h"
#include "cli/commands/LookedPictures.h"
#include "cli/commands/RememberedDefaults.h"
#include "cli/commands/RenderPicture.h"
#include "cli/commands/RunFrames.h"
#include "cli/commands/SheetPage.h"
#include "cli/commands/SheetShot.h"
#include "cli/commands/SheetViews.h"
#include "cli/text/SelectionText.h"
#include "cli/text/StandardOutput.h"
#include "pictures/PictureMemory.h"
#include "pictures/TextDrawing.h"
#include "render/shots/DrawnFile.h"
#include "render/shots/OutputFile.h"
#include "render/shots/ShotAreas.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kovalune::cli {

namespace {

/// A pass as its part of the sheet shows it.
struct SheetPass {
    host::ParamValues values;
    std::string title; ///< before its views' names; empty where there is one pass
    std::vector<SheetCell> cells;
    std::shared_ptr<const render::FrameArea> area; ///< null: everywhere

    std::string titleOf(const SheetCell& cell) const { return title + cell.caption; }
};

/// What there is to draw.
struct ViewsToDraw {
    const std::vector<SheetView>& all; ///< all stages run in the first, which the next pass goes on from
    const std::vector<SheetView>& chosen;
    const render::ShotSettings& settings;
    const shots::ShotAreas& areas;
    int64_t number = 0; ///< of the frame whose values count
};

/// Renders and draws views one by one, pass after pass.
class ViewsDrawing {
public:
    ViewsDrawing(render::OpenEffect& effect, const ViewsToDraw& views, const shots::SourceFrame& source,
                 const SheetArguments& arguments, pictures::SampleType type)
        : effect_(effect), views_(views), source_(source), arguments_(arguments),
          passes_(passesOf(effect.session(), views)), layout_(layoutOfViews()), page_(layout_, type),
          progress_(progressFrames(), source.pixels(), arguments.frame.quiet) {
        for (std::size_t pass = 0; pass < passes_.size(); ++pass) {
            const shots::PlannedFrame frame = {.number = std::nullopt,
                                               .input = source.name,
                                               .output = {},
                                               .isMissing = false,
                                               .held = std::nullopt};
            passes_[pass].area =
                views.areas.areaOf(pass, frame, source.image.width(), source.image.height(), notes_);
        }
    }

    pictures::Picture drawn() && {
        host::Image before;
        for (std::size_t pass = 0; pass < passes_.size(); ++pass) {
            before = drawPass(pass, pass == 0 ? source_.image : before);
        }
        return std::move(page_).drawn();
    }

private:
    struct Rendered {
        host::Image image;
        std::optional<FrameReport> counts;
    };

    static std::vector<SheetPass> passesOf(host::Session& session, const ViewsToDraw& views) {
        std::vector<SheetPass> passes;
        const bool several = views.settings.passCount() > 1;
        for (std::size_t pass = 0; pass < views.settings.passCount(); ++pass) {
            SheetPass& each = passes.emplace_back();
            each.values = views.settings.valuesAt(pass, views.number);
            each.title = several ? text::printable(views.settings.passName(pass)) + ": " : std::string();
            render::setValues(session, each.values);
            for (const SheetView& view : views.chosen) {
                each.cells.push_back(sheetCell(session, view));
            }
        }
        return passes;
    }

    const SheetView& first() const { return views_.all.front(); }
    bool isFirst(const SheetView& view) const { return view.value == first().value; }
    bool isFirstDrawn() const {
        return std::any_of(views_.chosen.begin(), views_.chosen.end(),
                           [this](const SheetView& view) { return isFirst(view); });
    }

    /// A pass begins a row.
    std::size_t cellsAPass(std::size_t columns) const {
        const std::size_t views = views_.chosen.size();
        return passes_.size() > 1 ? (views + columns - 1) / columns * columns : views;
    }

    SheetLayout layoutOfViews() const {
        const std::size_t views = views_.chosen.size();
        const std::size_t usualColumns = passes_.size() > 1 ? views : 0;
        const std::size_t columns =
            arguments_.columns > 0 ? std::min(static_cast<std::size_t>(arguments_.columns), views) : views;
        SheetContent content{.count = passes_.size() * cellsAPass(columns),
                             .width = source_.picture.width,
                             .height = source_.picture.height};
        const std::string mostPixels = "#000000 " + std::to_string(source_.pixels());
        for (const SheetPass& pass : passes_) {
            for (const SheetCell& cell : pass.cells) {
                content.textWidth =
                    std::max(content.textWidth, pictures::textSize(pass.titleOf(cell), 1).width);
                if (!cell.colors.empty()) {
                    content.textWidth = std::max(content.textWidth, colorLineWidth(mostPixels));
                    content.textLines =
                        std::max(content.textLines, static_cast<int64_t>(1 + cell.colors.size()));
                }
            }
        }
        return layoutFor(content, arguments_, usualColumns, "views");
    }

    std::vector<ProgressFrame> progressFrames() const {
        std::vector<ProgressFrame> frames;
        for (const SheetPass& pass : passes_) {
            const auto add = [&](const SheetCell& cell) {
                setValues(pass, cell.view);
                frames.push_back(
                    progressFrame(effect_.session(), arguments_.frame, text::printable(pass.titleOf(cell))));
            };
            if (!isFirstDrawn()) {
                add({first(), false, first().name, {}});
            }
            for (const SheetCell& cell : pass.cells) {
                if (!cell.isOff) {
                    add(cell);
                }
            }
        }
        return frames;
    }

    void setValues(const SheetPass& pass, const SheetView& view) const {
        render::setValues(effect_.session(), pass.values);
        effect_.session().setValue(view.param, view.value);
    }

    Rendered render(std::size_t pass, const SheetView& view, const host::Image& before) {
        setValues(passes_[pass], view);
        Rendered result;
        if (!arguments_.effect.plugin) {
            result.counts = FrameReport{.countsChanges = isFirst(view) && arguments_.report.report};
        }
        result.image = renderPicture(effect_, source_.name, before, arguments_.frame, progress_,
                                     result.counts ? &*result.counts : nullptr, passes_[pass].area.get());
        progress_.nextFrame();
        if (isFirst(view) && counts_.size() == pass) {
            takeCounts(pass, result.counts);
        }
        return result;
    }

    void takeCounts(std::size_t pass, const std::optional<FrameReport>& counts) {
        counts_.push_back(counts);
        const std::vector<std::string> notes = passNotes(effect_.session(), views_.settings, pass, counts);
        notes_.insert(notes_.end(), notes.begin(), notes.end());
        if (counts_.size() == passes_.size()) {
            tellSelection();
        }
    }

    /// Once the first view of the last pass is there.
    void tellSelection() {
        tellNotes(notes_, counts_.back(), arguments_.report);
        if (arguments_.report.report) {
            printOut(reportText(effect_.session(), views_.settings, views_.number, counts_, notes_,
                                arguments_.report.json));
        }
        checkStrict(notes_.size(), arguments_.report, arguments_.output);
    }

    /// Returns what the next pass goes on from.
    host::Image drawPass(std::size_t pass, const host::Image& before) {
        host::Image result;
        if (!isFirstDrawn()) {
            result = render(pass, first(), before).image;
        }
        const std::size_t begin = pass * cellsAPass(layout_.columns);
        for (std::size_t place = 0; place < passes_[pass].cells.size(); ++place) {
            const SheetCell& cell = passes_[pass].cells[place];
            const std::size_t at = begin + place;
            page_.name(at, passes_[pass].titleOf(cell));
            if (cell.isOff) {
                page_.leaveEmpty(at);
                continue;
            }
            Rendered rendered = render(pass, cell.view, before);
            drawColors(at, cell, rendered.counts);
            page_.picture(at, rendered.image, source_);
            if (isFirst(cell.view)) {
                result = std::move(rendered.image);
            }
        }
        return result;
    }

    /// Each with the pixels that match it.
    void drawColors(std::size_t at, const SheetCell& cell, const std::optional<FrameReport>& counts) {
        for (std::size_t line = 0; line < cell.colors.size(); ++line) {
            const ViewColor& color = cell.colors[line];
            page_.color(at, line + 1, color.color,
                        counts ? color.text + ' ' +
                                     std::to_string(counts->stages[*cell.view.stage].selected[color.place])
                               : color.text);
        }
    }

    render::OpenEffect& effect_;
    const ViewsToDraw& views_;
    const shots::SourceFrame& source_;
    const SheetArguments& arguments_;
    std::vector<SheetPass> passes_;
    SheetLayout layout_;
    SheetPage page_;
    ProgressLine progress_;
    std::vector<std::optional<FrameReport>> counts_; ///< of the passes' first views
    std::vector<std::string> notes_;
};

void drawFile(render::OpenEffect& effect, const ViewsToDraw& views, const SheetArguments& arguments,
              const std::string& input, pictures::FileFormat format) {
    const shots::SourceFrame source = shots::readFrame(input, arguments.frame.form);
    const SheetSamples samples = sheetSamples(source.picture, format, arguments.frame.form);
    const pictures::Picture sheet = ViewsDrawing(effect, views, source, arguments, samples.drawn).drawn();
    shots::writeOutput(arguments.output,
                       shots::encodeDrawn(format, sheet, samples.written, arguments.frame.form.encoding));
    noteLeftOut(source);
}

void drawViews(const SheetArguments& arguments, const shots::SequencePlan& plan,
               pictures::FileFormat format) {
    if (arguments.view) {
        throw text::Failure(text::FailureKind::kUsage,
                            "--view: is for a shot; of one picture all views are drawn, or those of --views");
    }
    const RememberedDefaults remembered = RememberedDefaults::forAllViews(arguments.effect);
    render::OpenEffect effect = openEffect(arguments.effect);
    host::Session& session = effect.session();
    const std::vector<SheetView> all = sheetViews(session);
    const std::vector<SheetView> chosen = chosenViews(session, all, arguments.views);
    const render::ShotSettings settings = shotSettings(session, arguments.effect, all.front().name);
    checkKeys(settings, plan, arguments.valueFrame);
    const shots::ShotAreas areas(settings, arguments.area, arguments.frame.form.decoding.mostPixels);
    areas.check(plan);
    const ViewsToDraw views = {all, chosen, settings, areas, arguments.valueFrame.value_or(0)};
    const std::string& input = plan.frames.front().input;
    pictures::withMemoryFor(input, [&] { drawFile(effect, views, arguments, input, format); });
    if (!arguments.frame.quiet) {
        render::setValues(session, settings.valuesAt(settings.passCount() - 1, views.number));
        remembered.tellIfTheyCount(session);
    }
}

} // namespace

void runSheet(const SheetArguments& arguments) {
    const shots::SequencePlan plan = lookedPlan(arguments.pictures);
    const pictures::FileFormat format =
        shots::checkDrawnFile(arguments.output, lookedFiles(plan), arguments.force, arguments.frame.form);
    if (plan.isOnePicture) {
        drawViews(arguments, plan, format);
    } else {
        drawShot(arguments, plan, format);
    }
}

} // namespace kovalune::cli
