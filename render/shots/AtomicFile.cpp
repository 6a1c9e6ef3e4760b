#include "render/shots/AtomicFile.h"

#include "render/shots/EndingSignals.h"
#include "render/shots/SignalWatch.h"
#include "render/shots/TemporaryFiles.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <cerrno>
#include <cstdio>
#include <deque>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kovalune::shots {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const fs::path& file, const std::string& reason) {
    throw text::Failure(text::FailureKind::kFile,
                        "cannot write " + text::inQuotes(file.string()) + ": " + reason);
}

[[noreturn]] void fail(const fs::path& file, int error) {
    fail(file, text::systemReason(error));
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

/// Where the bytes go in the end, so that a link stays a link, also one to a file that is yet to be made. What a
/// link holds counts from the folder that it is in.
fs::path targetOf(const fs::path& file) {
    constexpr int kMostLinks = 40; // as the system follows
    fs::path target = file;
    std::error_code error;
    for (int links = 0; fs::is_symlink(target, error); ++links) {
        if (links == kMostLinks) {
            fail(file, ELOOP);
        }
        const fs::path held = fs::read_symlink(target, error);
        if (error) {
            fail(file, error.value());
        }
        target = target.parent_path() / held;
    }
    return target;
}

[[noreturn]] void failInFolder(const fs::path& file, const fs::path& folder, int error) {
    fail(file, "the folder " + text::inQuotes(folder.string()) +
                   " takes no new file: " + text::systemReason(error));
}

/// Some file systems cannot be told to.
bool cannotFlush(int error) {
    return error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

/// The rights of the owner for whoever runs the file are for that owner alone. Another group gets what all others
/// have: not more, since it is not the one that was meant, and not less, since then it alone were shut out.
mode_t keptPermissions(mode_t old, bool keepsOwner, bool keepsGroup) {
    if (keepsOwner) {
        return old & 07777U;
    }
    return keepsGroup ? old & 0777U : (old & 0707U) | (old & 07U) << 3U;
}

/// A new file beside the one that it is to become; it is removed at the end unless it was renamed.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& file) : file_(file), target_(targetOf(file)) {
        constexpr int kAttempts = 100;
        const fs::path folder = folderOf(target_);
        for (int attempt = 0; attempt < kAttempts && stream_ == nullptr; ++attempt) {
            path_ = folder / temporaryName();
            onSignal_.emplace(path_);
            stream_ = std::fopen(path_.string().c_str(), "wbx");
            if (stream_ == nullptr && errno != EEXIST) {
                failInFolder(file_, folder, errno);
            }
        }
        if (stream_ == nullptr) {
            failInFolder(file_, folder, EEXIST);
        }
        holdTemporary(::fileno(stream_));
        // A signal that another thread took may have looked for the file before it was there.
        if (RemovedOnSignal::isEnding()) {
            ::unlink(path_.c_str());
        }
    }
    ~TemporaryFile() {
        if (stream_ != nullptr) {
            std::fclose(stream_);
        }
        if (!renamed_) {
            std::error_code ignored;
            fs::remove(path_, ignored);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void write(std::span<const uint8_t> bytes) {
        takeOwnerAndPermissions();
        if (std::fwrite(bytes.data(), 1, bytes.size(), stream_) != bytes.size() ||
            std::fflush(stream_) != 0) {
            fail(file_, errno);
        }
        // Before the name changes hands: after a crash it must not stand for a file that never reached the disk.
        if (::fsync(::fileno(stream_)) == 0) {
            return; // all is told; it is held until it has its name
        }
        if (!cannotFlush(errno)) {
            fail(file_, errno);
        }
        if (std::fclose(std::exchange(stream_, nullptr)) != 0) {
            fail(file_, errno);
        }
    }

    void place() {
        std::error_code error;
        fs::rename(path_, target_, error);
        if (error) {
            fail(file_, error.value());
        }
        renamed_ = true;
    }

private:
    /// Of the file that is replaced, before there is anything in this one that others might read. Not through a link
    /// that took the name since it was followed: what that leads to is not what is replaced.
    void takeOwnerAndPermissions() {
        struct stat old {};
        if (::lstat(target_.c_str(), &old) != 0 || !S_ISREG(old.st_mode)) {
            return;
        }
        const int descriptor = ::fileno(stream_);
        constexpr auto kSameOwner = static_cast<uid_t>(-1);
        const bool keepsOwner = ::fchown(descriptor, old.st_uid, old.st_gid) == 0;
        const bool keepsGroup = keepsOwner || ::fchown(descriptor, kSameOwner, old.st_gid) == 0;
        // Only a file system that knows no permissions refuses its file's owner, and there are none to keep in it.
        static_cast<void>(::fchmod(descriptor, keptPermissions(old.st_mode, keepsOwner, keepsGroup)));
    }

    fs::path file_; ///< for messages
    fs::path target_;
    fs::path path_;
    std::optional<RemovedOnSignal> onSignal_;
    std::FILE* stream_ = nullptr;
    bool renamed_ = false;
};

/// In a folder such as /tmp a file is replaced by its owner, the folder's, and root alone.
bool isKeptByFolder(const fs::path& target, const fs::path& folder) {
    struct stat file {};
    struct stat around {};
    if (::lstat(target.c_str(), &file) != 0 || ::stat(folder.c_str(), &around) != 0) {
        return false;
    }
    const uid_t user = ::geteuid();
    return (around.st_mode & S_ISVTX) != 0 && user != 0 && user != file.st_uid && user != around.st_uid;
}

} // namespace

bool isWriteProtected(const fs::path& file) {
    constexpr mode_t kAnybody = 0222;
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) {
        return false;
    }
    return (status.st_mode & kAnybody) == 0 || (::faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS) != 0 &&
                                                (errno == EACCES || errno == EPERM));
}

void checkWritable(const fs::path& file, bool force) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::none) {
        fail(file, error.value());
    }
    if (fs::is_directory(status)) {
        fail(file, "it is a folder");
    }
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        fail(file, "it is not an ordinary file");
    }
    const fs::path target = targetOf(file);
    const fs::path folder = folderOf(target);
    if (!fs::is_directory(folder, error)) {
        fail(file, "there is no folder " + text::inQuotes(folder.string()));
    }
    if (isKeptByFolder(target, folder)) {
        fail(file, "it is another user's, and in the folder " + text::inQuotes(folder.string()) +
                       " only owners replace files");
    }
    if (!force && isWriteProtected(file)) {
        fail(file, "it is write-protected; --force replaces it all the same");
    }
    const TemporaryFile attempt(file); // only the system knows whether it will
}

fs::path folderWrittenTo(const fs::path& file) {
    return folderOf(targetOf(file));
}

bool nameOneFile(const fs::path& a, const fs::path& b) {
    std::error_code error;
    if (fs::equivalent(a, b, error)) {
        return true;
    }
    const auto whole = [](const fs::path& file) {
        const fs::path target = targetOf(file);
        std::error_code ignored;
        return fs::canonical(folderOf(target), ignored) / target.filename();
    };
    return whole(a) == whole(b);
}

void writeAtomically(std::span<const FileContent> files) {
    std::deque<TemporaryFile> temporaries;
    for (const FileContent& each : files) {
        temporaries.emplace_back(each.file).write(each.bytes);
    }
    const SignalsHeldBack held; // between two renames: the files belong together
    for (TemporaryFile& temporary : temporaries) {
        temporary.place();
    }
}

void writeAtomically(const fs::path& file, std::span<const uint8_t> bytes) {
    const FileContent content = {file, bytes};
    writeAtomically({&content, 1});
}

} // namespace kovalune::shots
