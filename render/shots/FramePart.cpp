#include "render/shots/FramePart.h"

#include "text/Failure.h"
#include "text/MessageText.h"

#include <charconv>
#include <filesystem>
#include <system_error>

namespace kovalune::shots {

FramePart parsePart(std::string_view text) {
    FramePart part;
    const char* const end = text.data() + text.size();
    const auto number = std::from_chars(text.data(), end, part.number);
    const bool hasSlash = number.ec == std::errc() && number.ptr != end && *number.ptr == '/';
    const auto count = std::from_chars(hasSlash ? number.ptr + 1 : end, end, part.count);
    if (!hasSlash || count.ec != std::errc() || count.ptr != end || part.number < 1 ||
        part.number > part.count || part.count > kMostParts) {
        throw text::Failure(text::FailureKind::kUsage,
                            "--part takes K/N with 1 <= K <= N <= " + std::to_string(kMostParts) + ", not " +
                                text::inQuotes(text));
    }
    return part;
}

std::string nameForPart(const std::string& file, const FramePart& part) {
    std::filesystem::path path(file);
    path.replace_filename(path.stem().string() + '.' + std::to_string(part.number) +
                          path.extension().string());
    return path.string();
}

} // namespace kovalune::shots
