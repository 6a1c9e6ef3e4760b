#include "render/shots/SequenceInput.h"

#include "pictures/PictureFile.h"
#include "render/shots/FolderNames.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>

namespace kovalune::shots {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void failReading(const std::string& name, const std::string& reason) {
    throw text::Failure(text::FailureKind::kFile, "cannot read " + text::inQuotes(name) + ": " + reason);
}

std::vector<int64_t> framesOnDisk(const FramePattern& pattern) {
    std::vector<int64_t> frames;
    for (const std::string& name : fileNamesIn(pattern.folder())) {
        if (const std::optional<int64_t> frame = pattern.frameOf(name)) {
            frames.push_back(*frame);
        }
    }
    std::sort(frames.begin(), frames.end());
    return frames;
}

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

/// A name cut where its runs of digits begin and end: "a12b3" is "a", "12", "b", "3", "". Odd places are digits.
std::vector<std::string> piecesOf(const std::string& name) {
    std::vector<std::string> pieces(1);
    for (const char letter : name) {
        if (isDigit(letter) == (pieces.size() % 2 == 1)) {
            pieces.emplace_back();
        }
        pieces.back() += letter;
    }
    if (pieces.size() % 2 == 0) {
        pieces.emplace_back();
    }
    return pieces;
}

std::string joined(const std::vector<std::string>& pieces, std::size_t first, std::size_t last) {
    std::string text;
    for (std::size_t at = first; at < last; ++at) {
        text += pieces[at];
    }
    return text;
}

/// The pattern of names that have the same pieces but for the one at `place`; nothing where their zeros fit none.
std::optional<FramePattern> patternAt(const std::vector<std::vector<std::string>>& names, std::size_t place) {
    std::size_t width = names.front()[place].size();
    for (const auto& pieces : names) {
        width = std::min(width, pieces[place].size());
    }
    const auto& first = names.front();
    const FramePattern pattern(joined(first, 0, place), static_cast<int>(width),
                               joined(first, place + 1, first.size()));
    std::set<std::string> numbers;
    for (const auto& pieces : names) {
        const std::string file = fs::path(joined(pieces, 0, pieces.size())).filename().string();
        if (!pattern.frameOf(file) || !numbers.insert(pieces[place]).second) {
            return std::nullopt;
        }
    }
    return pattern;
}

/// Of two names or more that differ in one run of digits of the file's name and in nothing else.
std::optional<FramePattern> commonPattern(const std::vector<std::string>& names) {
    std::vector<std::vector<std::string>> all;
    all.reserve(names.size());
    for (const std::string& name : names) {
        all.push_back(piecesOf(name));
    }
    const std::vector<std::string>& first = all.front();
    std::optional<std::size_t> place;
    for (const auto& pieces : all) {
        if (pieces.size() != first.size()) {
            return std::nullopt;
        }
        for (std::size_t at = 0; at < pieces.size(); ++at) {
            if (pieces[at] == first[at] || place == at) {
                continue;
            }
            if (place || at % 2 == 0) {
                return std::nullopt;
            }
            place = at;
        }
    }
    if (!place || joined(first, *place + 1, first.size()).find('/') != std::string::npos) {
        return std::nullopt;
    }
    return patternAt(all, *place);
}

SequenceInput sequenceOf(const FramePattern& pattern) {
    SequenceInput input;
    input.frames = framesOnDisk(pattern);
    input.pattern = pattern;
    return input;
}

SequenceInput ofPattern(const FramePattern& pattern, const std::string& name) {
    std::error_code error;
    if (!fs::is_directory(pattern.folder(), error)) {
        failReading(name, "there is no folder " + text::inQuotes(pattern.folder().string()));
    }
    SequenceInput input = sequenceOf(pattern);
    if (input.frames.empty()) {
        failReading(name, "no file has such a name");
    }
    return input;
}

/// Each set of names that may be one sequence, by what they have in common.
std::vector<std::vector<std::string>> kindsOf(const std::vector<std::string>& names) {
    std::map<std::string, std::vector<std::string>> kinds;
    for (const std::string& name : names) {
        std::vector<std::string> pieces = piecesOf(name);
        if (pieces.size() > 1) {
            pieces[pieces.size() - 2] =
                "#"; // the last number counts frames, those before it takes and versions
        }
        kinds[joined(pieces, 0, pieces.size())].push_back(name);
    }
    std::vector<std::vector<std::string>> result;
    result.reserve(kinds.size());
    for (auto& [shape, members] : kinds) {
        result.push_back(std::move(members));
    }
    return result;
}

[[noreturn]] void refuseSeveral(const std::string& folder, const std::vector<std::string>& pictures) {
    constexpr std::size_t kMostNamed = 4;
    std::string list;
    std::size_t named = 0;
    const std::vector<std::vector<std::string>> kinds = kindsOf(pictures);
    for (const auto& names : kinds) {
        if (named++ == kMostNamed) {
            list += " and " + std::to_string(kinds.size() - kMostNamed) + " more";
            break;
        }
        const auto pattern = names.size() > 1 ? commonPattern(names) : std::nullopt;
        list += (list.empty() ? "" : ", ") +
                text::inQuotes(pattern ? fs::path(pattern->shown()).filename().string()
                                       : fs::path(names.front()).filename().string());
    }
    throw text::Failure(text::FailureKind::kUsage, text::inQuotes(folder) +
                                                       " holds more than one sequence: " + list +
                                                       "; write one of them");
}

SequenceInput ofFolder(const std::string& folder) {
    std::vector<std::string> pictures;
    for (const std::string& name : fileNamesIn(folder)) {
        if (!name.starts_with('.') && pictures::formatOfName(name)) {
            pictures.push_back((fs::path(folder) / name).string());
        }
    }
    if (pictures.empty()) {
        failReading(folder, "the folder holds no picture");
    }
    if (pictures.size() > 1) {
        const std::optional<FramePattern> pattern = commonPattern(pictures);
        if (!pattern) {
            refuseSeveral(folder, pictures);
        }
        return sequenceOf(*pattern);
    }
    SequenceInput input;
    input.pictures = pictures;
    input.fromFolder = true;
    return input;
}

SequenceInput ofOne(const std::string& name) {
    std::error_code error;
    const fs::file_status status = fs::status(name, error);
    if (fs::is_directory(status)) {
        return ofFolder(name);
    }
    if (!fs::exists(status)) {
        if (const std::optional<FramePattern> pattern = FramePattern::of(name)) {
            return ofPattern(*pattern, name);
        }
    }
    SequenceInput input;
    input.pictures = {name};
    return input;
}

void checkIsPicture(const std::string& name) {
    std::error_code error;
    const fs::file_status status = fs::status(name, error);
    if (fs::is_directory(status)) {
        throw text::Failure(text::FailureKind::kUsage,
                            text::inQuotes(name) + " is a folder, which stands for an INPUT alone");
    }
    if (!fs::exists(status) && FramePattern::of(name)) {
        throw text::Failure(text::FailureKind::kUsage,
                            text::inQuotes(name) + " is a pattern, which stands for an INPUT alone");
    }
}

} // namespace

SequenceInput sequenceInput(const std::vector<std::string>& names) {
    if (names.size() == 1) {
        return ofOne(names.front());
    }
    std::for_each(names.begin(), names.end(), checkIsPicture);
    SequenceInput input;
    if (const std::optional<FramePattern> pattern = commonPattern(names)) {
        input.pattern = pattern;
        for (const std::string& name : names) {
            input.frames.push_back(*pattern->frameOf(fs::path(name).filename().string()));
        }
        std::sort(input.frames.begin(), input.frames.end());
        return input;
    }
    input.pictures = names;
    return input;
}

} // namespace kovalune::shots
