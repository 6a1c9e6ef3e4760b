#include "render/shots/FramePattern.h"

#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>
#include <vector>

namespace kovalune::shots {

namespace {

struct Field {
    std::size_t start = 0;
    std::size_t size = 0;
    int width = 1;
};

/// "%d" or "%0Nd" at `start`, where a '%' is.
std::optional<Field> printfField(std::string_view name, std::size_t start) {
    constexpr int kMostDigits = 200; // no file's name is longer than 255
    const std::string_view rest = name.substr(start + 1);
    if (rest.starts_with('d')) {
        return Field{start, 2, 1};
    }
    int width = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), width);
    const auto digits = static_cast<std::size_t>(end - rest.data());
    if (!rest.starts_with('0') || error != std::errc() || width < 1 || width > kMostDigits ||
        digits == rest.size() || *end != 'd') {
        return std::nullopt;
    }
    return Field{start, digits + 2, width};
}

std::vector<Field> printfFields(std::string_view name) {
    std::vector<Field> fields;
    for (std::size_t at = name.find('%'); at < name.size(); at = name.find('%', at)) {
        if (name.substr(at).starts_with("%%")) {
            at += 2;
        } else if (const std::optional<Field> field = printfField(name, at)) {
            fields.push_back(*field);
            at += field->size;
        } else {
            ++at;
        }
    }
    return fields;
}

std::vector<Field> hashFields(std::string_view name) {
    std::vector<Field> fields;
    for (std::size_t at = name.find("##"); at < name.size(); at = name.find("##", at)) {
        const std::size_t end = std::min(name.find_first_not_of('#', at), name.size());
        fields.push_back({at, end - at, static_cast<int>(end - at)});
        at = end;
    }
    return fields;
}

std::string withPercentSigns(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        result += text[at];
        at += text.substr(at).starts_with("%%") ? std::size_t{1} : std::size_t{0};
    }
    return result;
}

} // namespace

std::string frameText(int64_t frame, int width) {
    std::string digits = std::to_string(frame);
    const std::size_t sign = frame < 0 ? 1 : 0;
    const auto wanted = static_cast<std::size_t>(std::max(width, 0));
    digits.insert(sign, wanted - std::min(wanted, digits.size()), '0');
    return digits;
}

std::optional<FramePattern> FramePattern::of(const std::string& name) {
    const std::size_t slash = name.rfind('/');
    const std::size_t start = slash == std::string::npos ? 0 : slash + 1;
    const std::string file = name.substr(start);
    std::vector<Field> fields = printfFields(file);
    if (fields.empty()) {
        fields = hashFields(file);
    }
    if (fields.empty()) {
        return std::nullopt;
    }
    if (fields.size() > 1) {
        throw text::Failure(text::FailureKind::kUsage, text::inQuotes(name) + " has " +
                                                           std::to_string(fields.size()) +
                                                           " places for a number, and takes one");
    }
    const Field& field = fields.front();
    return FramePattern(name.substr(0, start) + withPercentSigns(file.substr(0, field.start)), field.width,
                        withPercentSigns(file.substr(field.start + field.size)));
}

FramePattern::FramePattern(std::string prefix, int width, std::string suffix)
    : prefix_(std::move(prefix)), width_(width), suffix_(std::move(suffix)) {}

std::optional<int64_t> FramePattern::frameOf(std::string_view fileName) const {
    const std::string_view before = std::string_view(prefix_).substr(prefix_.rfind('/') + 1);
    if (fileName.size() <= before.size() + suffix_.size() || !fileName.starts_with(before) ||
        !fileName.ends_with(suffix_)) {
        return std::nullopt;
    }
    const std::string_view number =
        fileName.substr(before.size(), fileName.size() - before.size() - suffix_.size());
    int64_t frame = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), frame);
    if (error != std::errc() || end != number.data() + number.size() || frameText(frame, width_) != number) {
        return std::nullopt;
    }
    return frame;
}

std::filesystem::path FramePattern::folder() const {
    const std::filesystem::path folder = std::filesystem::path(prefix_).parent_path();
    return folder.empty() ? "." : folder;
}

std::string FramePattern::shown() const {
    return prefix_ + (width_ < 2 ? "%d" : std::string(static_cast<std::size_t>(width_), '#')) + suffix_;
}

} // namespace kovalune::shots
