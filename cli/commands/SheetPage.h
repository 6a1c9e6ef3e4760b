// A sheet as it is drawn: pictures of one size at their places, with names and colours above them.
#pragma once

#include "cli/arguments/Arguments.h"
#include "cli/files/SheetLayout.h"
#include "pictures/Canvas.h"
#include "render/shots/SourceFrame.h"

#include <cstdint>
#include <string>

namespace kovalune::cli {

/// Across at scale 1 of a line that a patch of its colour stands before.
int64_t colorLineWidth(const std::string& text);

/// As --columns, --scale and --width have it; `usualColumns` is for a sheet without --columns, 0: at most four. `what` are the
/// pictures in messages. Throws Failure where the sheet would be larger than that.
SheetLayout layoutFor(const SheetContent& content, const SheetArguments& arguments, std::size_t usualColumns,
                      const std::string& what);

/// Cells may be drawn by several threads at once, each by one.
class SheetPage {
public:
    /// Throws std::bad_alloc where there is no memory for it.
    SheetPage(const SheetLayout& layout, pictures::SampleType type);

    void name(std::size_t cell, const std::string& text);

    /// A line below the name, from 1 on.
    void color(std::size_t cell, std::size_t line, PF_Pixel color, const std::string& text);

    /// What a picture without one would stand on.
    void leaveEmpty(std::size_t cell);

    /// What the effect made of `source`, shrunk to the cell, over a checkerboard where it has alpha.
    void picture(std::size_t cell, const host::Image& image, const shots::SourceFrame& source);

    pictures::Picture drawn() && { return std::move(canvas_).picture(); }

private:
    pictures::Area place(std::size_t cell) const;

    SheetLayout layout_;
    pictures::Canvas canvas_;
};

/// The samples of a sheet of pictures like `source` that is written to a file of this format: those of the file and of the canvas.
struct SheetSamples {
    pictures::SampleType written = pictures::SampleType::kUint8;
    pictures::SampleType drawn = pictures::SampleType::kUint8;
};
SheetSamples sheetSamples(const pictures::Picture& source, pictures::FileFormat format,
                          const shots::FrameForm& form);

} // namespace kovalune::cli
