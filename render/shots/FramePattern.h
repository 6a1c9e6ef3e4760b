// A name of files that differ in a number alone: "cel.####.png" or "cel.%04d.png". The number's field stands in the file's
// name, not in its folder's, and is two or more '#', at least so many digits, or "%d" or "%0Nd" as printf has it. "%%" is then
// a percent sign, and beside a '%' field every '#' is itself.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace kovalune::shots {

/// As printf writes "%0Nd" with `width` as N: "0007", "-007", and longer numbers in full.
std::string frameText(int64_t frame, int width);

class FramePattern {
public:
    /// Nothing for a name without a field. Throws Failure for a name with two.
    static std::optional<FramePattern> of(const std::string& name);

    /// `prefix` with its folder, if it has one.
    FramePattern(std::string prefix, int width, std::string suffix);

    std::string nameOf(int64_t frame) const { return prefix_ + frameText(frame, width_) + suffix_; }

    /// The frame whose file in the folder has this name; nothing for any other name, as one with other zeros.
    std::optional<int64_t> frameOf(std::string_view fileName) const;

    /// "." where the pattern names none.
    std::filesystem::path folder() const;
    int width() const { return width_; }

    /// The pattern in the form with '#'; for messages.
    std::string shown() const;

    friend bool operator==(const FramePattern&, const FramePattern&) = default;

private:
    std::string prefix_;
    int width_;
    std::string suffix_;
};

} // namespace kovalune::shots
