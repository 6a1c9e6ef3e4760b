#include "render/SettingsLayer.h"

#include "effect/Kovalune.h"
#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <optional>
#include <tuple>
#include <utility>

namespace kovalune::render {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kSayNothing = ";#";

[[noreturn]] void refuse(const std::string& text) {
    throw text::Failure(text::FailureKind::kUsage, text);
}

std::string_view componentsOf(const host::Session& session, const SettingTarget& target) {
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(target.index)];
    return target.component == SettingTarget::kWhole && def.param_type == PF_Param_COLOR
               ? std::string_view("rgb")
               : std::string_view(&target.component, 1);
}

host::ParamValue componentValue(const host::ParamValue& value, char component) {
    const auto* const color = std::get_if<PF_Pixel>(&value);
    if (color == nullptr) {
        return value;
    }
    return A_long{component == 'r' ? color->red : component == 'g' ? color->green : color->blue};
}

enum class Repeated { kRefused, kReplaces };

/// What the lines of one layer have set so far, each with its line where there are lines.
class LayerBuilder {
public:
    LayerBuilder(const host::Session& session, Repeated repeated) : session_(session), repeated_(repeated) {}

    /// 0: all passes.
    std::size_t passOf(std::string_view name) {
        for (std::size_t i = 0; i < layer_.passes.size(); ++i) {
            if (layer_.passes[i].name == name) {
                return i + 1;
            }
        }
        layer_.passes.push_back({std::string(name), {}, {}});
        return layer_.passes.size();
    }

    void add(std::size_t pass, const Setting& setting, int line) {
        SettingTracks& tracks = of(pass).tracks;
        for (const char component : componentsOf(session_, setting.target)) {
            const SettingTarget target{setting.target.index, component};
            const auto [track, isNew] = tracks.try_emplace(target);
            if (!isNew) {
                checkAgain(track->second, pass, target, setting);
            }
            const host::ParamValue value = componentValue(setting.value, component);
            if (setting.frame) {
                track->second.keys.emplace(*setting.frame, value);
            } else {
                track->second.constant = value;
            }
            lines_[{pass, target, setting.frame}] = line;
        }
    }

    /// What lines say of where a pass may work, each label once.
    bool addArea(std::size_t pass, std::string_view line, const std::string& folder, int number) {
        const std::size_t equals = line.find('=');
        const std::string_view label = text::trimmed(line.substr(0, equals));
        if (equals == std::string_view::npos || session_.findParam(std::string(label)) ||
            !takeAreaLine(of(pass).area, label, line.substr(equals + 1), folder)) {
            return false;
        }
        const auto [place, isNew] = areaLines_.emplace(std::pair(pass, text::foldedCase(label)), number);
        if (!isNew) {
            refuse(text::inQuotes(label) + " was set in line " + std::to_string(place->second) + " already");
        }
        return true;
    }

    SettingsLayer take() { return std::move(layer_); }

private:
    using Place = std::tuple<std::size_t, SettingTarget, std::optional<int64_t>>;

    PassSettings& of(std::size_t pass) { return pass == 0 ? layer_.common : layer_.passes[pass - 1]; }

    std::string nameOf(const SettingTarget& target) const {
        return text::inQuotes(session_.params()[static_cast<std::size_t>(target.index)].name);
    }

    std::string lineOf(const Place& place) const {
        const auto found = lines_.find(place);
        return found == lines_.end() || found->second == 0 ? "" : " in line " + std::to_string(found->second);
    }

    void checkAgain(const SettingTrack& track, std::size_t pass, const SettingTarget& target,
                    const Setting& setting) const {
        if (!setting.frame && !track.isKeyed()) {
            if (repeated_ == Repeated::kRefused) {
                refuse(nameOf(target) + " was set" + lineOf({pass, target, std::nullopt}) + " already");
            }
            return;
        }
        if (!setting.frame || !track.isKeyed()) {
            refuse(nameOf(target) +
                   " has one value for all frames and one for a single frame; it takes either");
        }
        if (track.keys.contains(*setting.frame)) {
            refuse(nameOf(target) + " was set for frame " + std::to_string(*setting.frame) +
                   lineOf({pass, target, setting.frame}) + " already");
        }
    }

    const host::Session& session_;
    const Repeated repeated_;
    SettingsLayer layer_;
    std::map<Place, int> lines_;
    std::map<std::pair<std::size_t, std::string>, int> areaLines_;
};

/// Told by its mark, or by zeros in every other byte, as ASCII has them there.
bool isUtf16(std::string_view text) {
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
        return true;
    }
    std::array<std::size_t, 2> zeros{}; // in bytes of even and of odd places
    for (std::size_t at = 0; at < text.size(); ++at) {
        zeros[at % 2] += text[at] == '\0' ? 1U : 0U;
    }
    constexpr std::size_t kLeastBytes = 4; // a shorter text has no setting
    return text.size() >= kLeastBytes && std::max(zeros[0], zeros[1]) > text.size() / 4 &&
           std::min(zeros[0], zeros[1]) == 0;
}

/// "1.0" as 1, 0; nothing for what is no version.
std::optional<std::pair<int, int>> versionOf(std::string_view text) {
    std::pair<int, int> version;
    const char* const end = text.data() + text.size();
    const auto major = std::from_chars(text.data(), end, version.first);
    if (major.ec != std::errc() || major.ptr == end || *major.ptr != '.') {
        return std::nullopt;
    }
    const auto minor = std::from_chars(major.ptr + 1, end, version.second);
    return minor.ec == std::errc() && minor.ptr == end ? std::optional(version) : std::nullopt;
}

/// Whether it is "[Version=...]".
bool isVersionLine(std::string_view line) {
    constexpr std::string_view kStart = "[Version=";
    if (!line.ends_with(']') || !text::equalWithoutCase(line.substr(0, kStart.size()), kStart)) {
        return false;
    }
    const std::string_view number = line.substr(kStart.size(), line.size() - kStart.size() - 1);
    const auto version = versionOf(text::trimmed(number));
    if (version && *version > std::pair(2, 0)) {
        refuse("settings of version " + std::string(text::trimmed(number)) +
               " are newer than this program, which reads versions 1.0 and 2.0");
    }
    return version && *version >= std::pair(1, 0);
}

/// The name in "[Pass NAME]".
std::optional<std::string_view> passNameOf(std::string_view line) {
    constexpr std::string_view kStart = "[Pass ";
    if (!line.ends_with(']') || !text::equalWithoutCase(line.substr(0, kStart.size()), kStart)) {
        return std::nullopt;
    }
    const std::string_view name = text::trimmed(line.substr(kStart.size(), line.size() - kStart.size() - 1));
    if (name.empty() || name.find_first_of("[]") != std::string_view::npos) {
        refuse("a pass is [Pass NAME] with a name without brackets, not " + text::inQuotes(line));
    }
    return name;
}

/// The lines of a file, one after the other.
class FileReader {
public:
    FileReader(const host::Session& session, LayerBuilder& builder, std::string folder)
        : session_(session), builder_(builder), folder_(std::move(folder)) {}

    void take(std::string_view line, int number) {
        if (line.find('\r') != std::string_view::npos) {
            refuse(
                "it holds a bare carriage return, which ends no line; lines end as on Linux or on Windows");
        }
        const std::string_view inner = text::trimmed(line);
        if (inner.empty() || kSayNothing.find(inner.front()) != std::string_view::npos) {
            return;
        }
        if (inner.front() == '[') {
            takeSection(inner);
            return;
        }
        if (!builder_.addArea(pass_, inner, folder_, number)) {
            builder_.add(pass_, parseSetting(session_, inner), number);
        }
    }

private:
    void takeSection(std::string_view line) {
        if (const std::optional<std::string_view> name = passNameOf(line)) {
            pass_ = builder_.passOf(*name);
        } else if (!isVersionLine(line)) {
            refuse("the section " + text::inQuotes(line) + " is not [" + defaultsSection() + "]");
        }
    }

    const host::Session& session_;
    LayerBuilder& builder_;
    const std::string folder_;
    std::size_t pass_ = 0;
};

} // namespace

bool SettingsLayer::hasKeys() const {
    const auto keyed = [](const auto& track) { return track.second.isKeyed(); };
    return std::any_of(common.tracks.begin(), common.tracks.end(), keyed) ||
           std::any_of(passes.begin(), passes.end(), [&](const PassSettings& pass) {
               return std::any_of(pass.tracks.begin(), pass.tracks.end(), keyed);
           });
}

SettingsLayer parseSettingsText(const host::Session& session, std::string_view text,
                                const std::string& name) {
    if (isUtf16(text)) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot read " + text::inQuotes(name) +
                                ": it is text in UTF-16, and settings are read in UTF-8; save it as that");
    }
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    LayerBuilder builder(session, Repeated::kRefused);
    FileReader reader(session, builder, std::filesystem::path(name).parent_path().string());
    for (int number = 1; !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        try {
            reader.take(line, number);
        } catch (const text::Failure& failure) {
            throw text::Failure(failure.kind(), text::inQuotes(name) + " line " + std::to_string(number) +
                                                    ": " + failure.what());
        }
    }
    return builder.take();
}

SettingsLayer parseSettingOptions(const host::Session& session, std::span<const std::string> options) {
    LayerBuilder builder(session, Repeated::kReplaces);
    for (const std::string& option : options) {
        std::string_view setting = text::trimmed(option);
        std::size_t pass = 0;
        if (setting.starts_with('[')) {
            const std::size_t end = setting.find(']');
            const std::string_view name = text::trimmed(setting.substr(1, std::min(end, setting.size()) - 1));
            if (end == std::string_view::npos || name.empty()) {
                refuse("--set takes LABEL=VALUE or [PASS] LABEL=VALUE, not " + text::inQuotes(option));
            }
            pass = builder.passOf(name);
            setting.remove_prefix(end + 1);
        }
        if (setting.find('=') == std::string_view::npos) {
            refuse("--set takes LABEL=VALUE, not " + text::inQuotes(option));
        }
        builder.add(pass, parseSetting(session, setting), 0);
    }
    return builder.take();
}

} // namespace kovalune::render
