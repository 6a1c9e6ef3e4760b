#include "render/shots/TemporaryFiles.h"

#include "render/shots/FolderNames.h"
#include "render/shots/SignalWatch.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <random>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kovalune::shots {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kStart = ".kovalune-";
constexpr std::string_view kEnd = ".tmp";
constexpr std::size_t kMostDigits = 16;

constexpr std::time_t kSecondsToHold = 10;
constexpr std::time_t kSecondsWithoutLocks = 86400; // a day

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return number_; }

private:
    int number_;
};

struct flock wholeFile() {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET; // from the first byte on, however many there will be
    return lock;
}

enum class Holder { kNobody, kSomebody, kUnknown };

Holder holderOf(int descriptor) {
    struct flock lock = wholeFile();
    if (::fcntl(descriptor, F_SETLK, &lock) == 0) {
        return Holder::kNobody;
    }
    return errno == EACCES || errno == EAGAIN ? Holder::kSomebody : Holder::kUnknown;
}

[[noreturn]] void failSweeping(const fs::path& folder, int error) {
    throw text::Failure(text::FailureKind::kFile, "cannot sweep the folder " +
                                                      text::inQuotes(folder.string()) + ": " +
                                                      text::systemReason(error));
}

/// Of the machine that keeps the folder, whose files' times are compared with it: clocks of a farm differ.
std::time_t clockOf(const fs::path& folder) {
    const fs::path path = folder / temporaryName();
    const RemovedOnSignal onSignal(path);
    const Descriptor made(::open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600));
    struct stat status {};
    if (made.number() < 0 || ::fstat(made.number(), &status) != 0) {
        const int error = errno;
        ::unlink(path.c_str());
        failSweeping(folder, error);
    }
    ::unlink(path.c_str());
    return status.st_mtime;
}

std::vector<fs::path> temporariesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const std::string& name : fileNamesIn(folder)) {
        if (isTemporaryName(name)) {
            files.push_back(folder / name);
        }
    }
    return files;
}

/// Takes what is nobody's; the lock is held until it is gone.
void sweepFile(const fs::path& file, std::time_t now, SweptFolder& swept) {
    const auto leave = [&](int error) {
        if (error != ENOENT) { // another sweep was faster, or the file was renamed
            swept.left.push_back(text::inQuotes(file.string()) + ": " + text::systemReason(error));
        }
    };
    const Descriptor opened(::open(file.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (opened.number() < 0 || ::fstat(opened.number(), &status) != 0) {
        leave(errno);
        return;
    }
    if (!S_ISREG(status.st_mode) || now - status.st_mtime <= kSecondsToHold) {
        return;
    }
    const Holder holder = holderOf(opened.number());
    if (holder == Holder::kSomebody ||
        (holder == Holder::kUnknown && now - status.st_mtime <= kSecondsWithoutLocks)) {
        return;
    }
    // It may have got its own name since it was opened: then it is the one that is meant to stay.
    struct stat named {};
    if (::lstat(file.c_str(), &named) != 0 || named.st_ino != status.st_ino) {
        return;
    }
    if (::unlink(file.c_str()) == 0) {
        swept.removed.push_back(file);
    } else {
        leave(errno);
    }
}

} // namespace

std::string temporaryName() {
    std::random_device source;
    const uint64_t number = uint64_t{source()} << 32 | source();
    std::array<char, kMostDigits> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
    return std::string(kStart) + std::string(digits.data(), end.ptr) + std::string(kEnd);
}

bool isTemporaryName(const std::string& name) {
    return name.starts_with(kStart) && name.ends_with(kEnd) && name.size() > kStart.size() + kEnd.size();
}

void holdTemporary(int descriptor) {
    struct flock lock = wholeFile();
    static_cast<void>(::fcntl(descriptor, F_SETLK, &lock));
}

SweptFolder sweepFolder(const fs::path& folder) {
    SweptFolder swept;
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        return swept;
    }
    const std::vector<fs::path> files = temporariesIn(folder);
    if (files.empty()) {
        return swept;
    }
    const std::time_t now = clockOf(folder);
    for (const fs::path& file : files) {
        sweepFile(file, now, swept);
    }
    return swept;
}

} // namespace kovalune::shots
