#include "effect/platform/Platform.h"
#include "effect/platform/ProfileFile.h"
#include "effect/platform/posix/File.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace kovalune::platform {
namespace {

enum class Presence { kPresent, kMissing, kUnusable };

struct ProfileText {
    Presence presence = Presence::kUnusable;
    mode_t permissions = 0;
    std::string text; // one byte longer than the limit if the file is too large
};

ProfileText readProfile(const char* path) {
    ProfileText profile;
    const FileDescriptor file = openForReading(path);
    if (!file.isOpen()) {
        profile.presence = errno == ENOENT ? Presence::kMissing : Presence::kUnusable;
        return profile;
    }
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) {
        return profile;
    }
    if (!S_ISREG(status.st_mode)) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        return profile;
    }
    if (!readUpTo(file, kProfileSizeLimit + 1, profile.text)) {
        profile.text.clear();
        return profile;
    }
    profile.presence = Presence::kPresent;
    profile.permissions = status.st_mode & 0777U;
    return profile;
}

std::optional<std::string> readValue(const char* section, const char* key, const char* file) {
    if (section == nullptr || key == nullptr || file == nullptr) {
        return std::nullopt;
    }
    const ProfileText profile = readProfile(file);
    const std::string_view readable = std::string_view(profile.text).substr(0, kProfileSizeLimit);
    const std::optional<std::string_view> value = findProfileValue(readable, section, key);
    return value ? std::optional<std::string>(*value) : std::nullopt;
}

// The file that a link leads to, so that replacing the file keeps the link; the path itself if there is none
// yet.
std::string resolved(const char* path) {
    const std::unique_ptr<char, void (*)(void*)> target(::realpath(path, nullptr), &std::free);
    return target ? target.get() : path;
}

std::string folderWithSeparator(std::string_view path) {
    return std::string(path.substr(0, path.rfind(kPathSeparator) + 1));
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.empty() ? "." : path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// A new file beside the one to be replaced; it is removed again unless it takes that one's place.
class Replacement {
public:
    explicit Replacement(const std::string& target) : target_(target), file_(create()) {}
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement() {
        if (created_ && !placed_) {
            const int reason = errno;
            ::unlink(name_.c_str());
            errno = reason;
        }
    }

    bool place(const std::string& content, std::optional<mode_t> permissions) {
        placed_ = created_ && (!permissions || ::fchmod(file_.get(), *permissions) == 0) &&
                  writeAll(file_, content) && ::fsync(file_.get()) == 0 && file_.close() &&
                  ::rename(name_.c_str(), target_.c_str()) == 0;
        return placed_;
    }

private:
    // Tries further names where one is taken, by another writer or by what a killed one left behind.
    int create() {
        static std::atomic<unsigned> counter{0};
        constexpr int kAttempts = 100;
        const std::string stem =
            folderWithSeparator(target_) + ".profile-" + std::to_string(::getpid()) + "-";
        for (int attempt = 0; attempt < kAttempts; ++attempt) {
            name_ = stem + std::to_string(counter.fetch_add(1)) + ".tmp";
            const int descriptor =
                ::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY, 0666);
            if (descriptor >= 0 || errno != EEXIST) {
                created_ = descriptor >= 0;
                return descriptor;
            }
        }
        return -1;
    }

    std::string target_;
    std::string name_;
    bool created_ = false;
    bool placed_ = false;
    FileDescriptor file_;
};

bool replaceProfile(const std::string& path, const ProfileText& before, const std::string& text) {
    if (before.presence == Presence::kMissing) {
        return Replacement(path).place(text, std::nullopt);
    }
    // Renaming needs no right to the file itself, so a write-protected one is asked for here.
    return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0 &&
           Replacement(path).place(text, before.permissions);
}

std::optional<std::string> edited(const std::string& text, const char* section, const char* key,
                                  const char* value) {
    if (key == nullptr) {
        return withoutProfileSection(text, section);
    }
    if (value == nullptr) {
        return withoutProfileKey(text, section, key);
    }
    return withProfileValue(text, section, key, value);
}

} // namespace

int32_t profileInt(const char* section, const char* key, int32_t fallback, const char* file) {
    const std::optional<std::string> value = readValue(section, key, file);
    return value && !value->empty() ? profileValueAsInt(*value) : fallback;
}

std::string profileString(const char* section, const char* key, const char* fallback, std::size_t maxChars,
                          const char* file) {
    const std::optional<std::string> value = readValue(section, key, file);
    std::string_view result;
    if (value) {
        result = profileValueAsString(*value);
    } else if (fallback != nullptr) {
        result = fallback;
        result = result.substr(0, result.find_last_not_of(' ') + 1);
    }
    return std::string(result.substr(0, maxChars == 0 ? 0 : maxChars - 1));
}

bool writeProfileString(const char* section, const char* key, const char* value, const char* file) {
    if (section == nullptr || file == nullptr || *file == '\0') {
        errno = EINVAL;
        return false;
    }
    const std::string path = resolved(file);
    const ProfileText before = readProfile(path.c_str());
    if (before.presence == Presence::kUnusable) {
        return false;
    }
    if (before.text.size() > kProfileSizeLimit) {
        errno = EFBIG;
        return false;
    }
    const std::optional<std::string> after = edited(before.text, section, key, value);
    if (!after || after->size() > kProfileSizeLimit) {
        errno = after ? EFBIG : EINVAL;
        return false;
    }
    if (*after == before.text) {
        return before.presence == Presence::kPresent || isFolder(folderWithSeparator(path));
    }
    return replaceProfile(path, before, *after);
}

} // namespace kovalune::platform
