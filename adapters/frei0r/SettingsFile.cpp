#include "adapters/frei0r/SettingsFile.h"

#include "text/Failure.h"
#include "text/MessageText.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

namespace kovalune::frei0r {

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw text::Failure(text::FailureKind::kFile,
                        "cannot read the settings file " + text::inQuotes(path) + ": " + reason);
}

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string textOf(const std::string& path) {
    const std::unique_ptr<std::FILE, Close> file(std::fopen(path.c_str(), "rbe"));
    if (!file) {
        fail(path, text::systemReason(errno));
    }
    std::string content;
    std::array<char, 4096> part{};
    while (const std::size_t count = std::fread(part.data(), 1, part.size(), file.get())) {
        content.append(part.data(), count);
        if (content.size() > kMostFileBytes) {
            fail(path, "it is larger than " + std::to_string(kMostFileBytes) + " bytes");
        }
    }
    if (std::ferror(file.get()) != 0) {
        fail(path, text::systemReason(errno)); // a folder can be opened
    }
    return content;
}

bool hasArea(const render::AreaSettings& area) {
    return area.mask || area.maskBy || area.invert || area.region;
}

} // namespace

render::SettingsLayer readSettingsFile(const host::Session& session, const std::string& path) {
    render::SettingsLayer layer = render::parseSettingsText(session, textOf(path), path);
    const char* const refused = !layer.passes.empty()        ? "passes"
                                : layer.hasKeys()            ? "keys"
                                : hasArea(layer.common.area) ? "a mask or a region"
                                                             : nullptr;
    if (refused != nullptr) {
        throw text::Failure(text::FailureKind::kUsage,
                            "the settings file " + text::inQuotes(path) + " has " + refused +
                                ", which this host has no place for: it takes LABEL=VALUE lines alone");
    }
    return layer;
}

} // namespace kovalune::frei0r
