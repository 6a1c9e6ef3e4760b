#include "cli/commands/SheetPage.h"

#include "pictures/AreaMean.h"
#include "pictures/PictureConversion.h"
#include "pictures/TextDrawing.h"
#include "text/Failure.h"
#include "text/MessageText.h"

namespace kovalune::cli {

namespace {

constexpr pictures::DrawnColor kBackground = {96, 96, 96};
constexpr pictures::DrawnColor kText = {240, 240, 240};
constexpr pictures::DrawnColor kDarkSquare = {112, 112, 112};
constexpr pictures::DrawnColor kLightSquare = {160, 160, 160};
constexpr int64_t kPatchSide = 9;  // dots of the letters
constexpr int64_t kPatchDots = 14; // with the room beside it

} // namespace

int64_t colorLineWidth(const std::string& text) {
    return kPatchDots + pictures::textSize(text, 1).width;
}

SheetLayout layoutFor(const SheetContent& content, const SheetArguments& arguments, std::size_t usualColumns,
                      const std::string& what) {
    SheetForm form{.columns =
                       arguments.columns > 0 ? static_cast<std::size_t>(arguments.columns) : usualColumns,
                   .scale = arguments.scale};
    form.mostWidth = arguments.width > 0 ? arguments.width
                     : arguments.scale   ? kWidestSheet
                                         : kUsualSheetWidth;
    const SheetLayout layout = sheetLayout(content, form);
    if (arguments.width > 0 && layout.width() > form.mostWidth) {
        throw text::Failure(text::FailureKind::kUsage, "--width: " + std::to_string(layout.columns) + ' ' +
                                                           what + " beside each other need " +
                                                           std::to_string(layout.width()) + " pixels, not " +
                                                           std::to_string(arguments.width));
    }
    const int64_t mostHeight = kWidestSheet;
    if (layout.width() > form.mostWidth || layout.height() > mostHeight) {
        throw text::Failure(text::FailureKind::kFile,
                            "the sheet of " + text::inQuotes(arguments.pictures.inputs.front()) +
                                " would be " + std::to_string(layout.width()) + " x " +
                                std::to_string(layout.height()) + " pixels; it has at most " +
                                std::to_string(form.mostWidth) + " x " + std::to_string(mostHeight));
    }
    return layout;
}

SheetPage::SheetPage(const SheetLayout& layout, pictures::SampleType type)
    : layout_(layout), canvas_(static_cast<uint32_t>(layout.width()), static_cast<uint32_t>(layout.height()),
                               kBackground, type) {}

pictures::Area SheetPage::place(std::size_t cell) const {
    return {layout_.left(cell), layout_.top(cell) + layout_.captionHeight, layout_.pictureWidth,
            layout_.pictureHeight};
}

void SheetPage::name(std::size_t cell, const std::string& text) {
    pictures::drawText(canvas_, layout_.left(cell), layout_.top(cell), text, kText, layout_.textScale);
}

void SheetPage::color(std::size_t cell, std::size_t line, PF_Pixel color, const std::string& text) {
    const int64_t top = layout_.top(cell) + static_cast<int64_t>(line) * layout_.lineHeight;
    const int64_t left = layout_.left(cell);
    const int64_t side = kPatchSide * layout_.textScale;
    canvas_.fill({left, top, side, side}, {color.red, color.green, color.blue});
    pictures::drawText(canvas_, left + kPatchDots * layout_.textScale, top, text, kText, layout_.textScale);
}

void SheetPage::leaveEmpty(std::size_t cell) {
    canvas_.checker(place(cell), (layout_.margin + 1) / 2, kDarkSquare, kLightSquare);
}

void SheetPage::picture(std::size_t cell, const host::Image& image, const shots::SourceFrame& source) {
    const pictures::Area area = place(cell);
    pictures::Picture drawn = pictures::pictureOf(
        image, source.image, source.picture, {canvas_.picture().sampleType, pictures::AlphaKind::kStraight});
    if (area.width != int64_t{drawn.width} || area.height != int64_t{drawn.height}) {
        drawn =
            pictures::shrunk(drawn, static_cast<uint32_t>(area.width), static_cast<uint32_t>(area.height));
    }
    if (pictures::hasAlpha(drawn.channels)) {
        leaveEmpty(cell);
    }
    canvas_.draw(drawn, area.left, area.top);
}

SheetSamples sheetSamples(const pictures::Picture& source, pictures::FileFormat format,
                          const shots::FrameForm& form) {
    const pictures::SampleType type = shots::outputForm(source, format, form).sampleType;
    return {type, type == pictures::SampleType::kHalf ? pictures::SampleType::kFloat : type};
}

} // namespace kovalune::cli
