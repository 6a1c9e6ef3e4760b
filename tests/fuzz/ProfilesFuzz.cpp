// Any bytes at all as a profile file, with any names and values. By the rules of POSIX systems: what is set is read back, what is
// deleted is gone, every other line stays. By those of Windows: the system's functions are never called with what they take for
// something else, and any answer of theirs is borne.

#include "effect/params/DefaultsFile.h"
#include "effect/platform/Ascii.h"
#include "effect/platform/Platform.h"
#include "effect/platform/ProfileFile.h"
#include "tests/fuzz/Require.h"
#include "tests/fuzz/Taken.h"
#include "tests/fuzz/WindowsProfile.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace kovalune::test {
namespace {

using namespace platform;

/// Of a name or a value that a C text holds.
std::string trimmed(const std::string& text) {
    constexpr const char* kBlanks = " \t\r\v\f";
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

struct Entry {
    std::string section;
    std::string key;
    std::string value;
};

// ---- The text

void checkSetting(const std::string& text, const Entry& entry, const Entry& other) {
    const std::optional<std::string> after = withProfileValue(text, entry.section, entry.key, entry.value);
    if (!after) {
        return;
    }
    const auto found = findProfileValue(*after, entry.section, entry.key);
    require(found && *found == trimmed(entry.value), "a value that was set is found:", *after);
    const bool isSame = equalButForCase(trimmed(entry.section), trimmed(other.section)) &&
                        equalButForCase(trimmed(entry.key), trimmed(other.key));
    if (!isSame) {
        const auto before = findProfileValue(text, other.section, other.key);
        const auto later = findProfileValue(*after, other.section, other.key);
        require(before == later, "another value stays:", *after);
    }
    // Blanks around a value stand beside those that are there.
    require(trimmed(entry.value) != entry.value ||
                withProfileValue(*after, entry.section, entry.key, entry.value) == after,
            "setting it again changes nothing:", *after);
    const std::string without = withoutProfileKey(*after, entry.section, entry.key);
    require(!findProfileValue(without, entry.section, entry.key), "a key that was deleted is gone:", without);
    require(withoutProfileKey(without, entry.section, entry.key) == without,
            "deleting again changes nothing");
    const std::string cut = withoutProfileSection(*after, entry.section);
    require(!findProfileValue(cut, entry.section, entry.key), "a section that was deleted is gone:", cut);
    require(withoutProfileSection(cut, entry.section) == cut, "deleting it again changes nothing");
}

// ---- The file

class OwnFile {
public:
    OwnFile() {
        std::string name = (std::filesystem::temp_directory_path() / "profile-XXXXXX").string();
        require(mkdtemp(name.data()) != nullptr, "a folder is made");
        folder_ = name;
    }
    OwnFile(const OwnFile&) = delete;
    OwnFile& operator=(const OwnFile&) = delete;
    ~OwnFile() { std::filesystem::remove_all(folder_); }

    std::string path() const { return folder_ + "/it.ini"; }
    void put(const std::string& text) const { std::ofstream(path(), std::ios::binary) << text; }
    std::string content() const {
        std::ifstream file(path(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// Whether nothing lies beside the file.
    bool isAlone() const {
        const std::filesystem::directory_iterator files(folder_);
        return std::distance(begin(files), end(files)) == 1;
    }

private:
    std::string folder_;
};

void checkFile(const std::string& text, const Entry& entry, std::size_t maxChars) {
    static const OwnFile file;
    file.put(text);
    const std::string path = file.path();
    const auto found = findProfileValue(text, entry.section, entry.key);
    const auto expected = found ? std::string(profileValueAsString(*found)) : std::string("otherwise");
    const std::string read =
        profileString(entry.section.c_str(), entry.key.c_str(), "otherwise  ", maxChars, path.c_str());
    require(read == expected.substr(0, maxChars == 0 ? 0 : maxChars - 1), "a value is read:", read);
    const int32_t number = profileInt(entry.section.c_str(), entry.key.c_str(), 77, path.c_str());
    require(number == (found && !found->empty() ? profileValueAsInt(*found) : 77), "a number is read");
    require(std::isfinite(parseNumber(read)), "a remembered number is finite:", read);

    const auto after = withProfileValue(text, entry.section, entry.key, entry.value);
    const bool written =
        writeProfileString(entry.section.c_str(), entry.key.c_str(), entry.value.c_str(), path.c_str());
    require(written == after.has_value(), "what can stand in a profile is written");
    require(file.content() == after.value_or(text), "the file holds what it should");
    require(file.isAlone(), "nothing is left beside the file");
}

// ---- Windows

void checkWindows(const Entry& entry, std::size_t maxChars, Taken& taken) {
    windows::answer = entry.value;
    const auto orNull = [&taken](const std::string& text) {
        return taken.below(8) == 7 ? nullptr : text.c_str();
    };
    const std::string path(static_cast<std::size_t>(taken.byte()) * 2, 'p');
    const char* const section = orNull(entry.section);
    const char* const key = orNull(entry.key);
    const char* const value = orNull(entry.value);
    const char* const file = orNull(path);
    const std::string read = platform::windowsProfileString(section, key, value, maxChars, file);
    require(read.size() < maxChars || (maxChars == 0 && read.empty()), "a value fits the room for it");
    static_cast<void>(platform::windowsProfileInt(section, key, 5, file));
    windows::lastSet.reset();
    const bool written = platform::windowsWriteProfileString(section, key, value, file);
    require(written == windows::lastSet.has_value(), "what is written is what the system was told to");
    if (windows::lastSet && key != nullptr && value != nullptr) {
        require(withProfileValue("", section, key, value).has_value(),
                "no line is written that breaks the file");
    }
}

} // namespace
} // namespace kovalune::test

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    using namespace kovalune::test;
    Taken taken(data, size);
    const int32_t what = taken.below(3);
    const std::size_t maxChars = taken.byte();
    Entry entry;
    Entry other;
    for (std::string* const text : {&entry.section, &entry.key, &entry.value, &other.section, &other.key}) {
        *text = taken.text();
    }
    if (what == 0) {
        checkSetting(taken.restAsText(), entry, other);
    } else if (what == 1) {
        checkFile(taken.restAsText(), entry, maxChars);
    } else {
        checkWindows(entry, maxChars, taken);
    }
    return 0;
}
