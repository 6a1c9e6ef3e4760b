#include "render/shots/FolderNames.h"

#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

namespace kovalune::shots {

namespace {

[[noreturn]] void failReading(const std::filesystem::path& folder, int error) {
    throw text::Failure(text::FailureKind::kFile,
                        "cannot read " + text::inQuotes(folder.string()) + ": " + text::systemReason(error));
}

struct CloseFolder {
    void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

/// Links count as what they lead to.
bool isFolder(DIR* in, const dirent& entry) {
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) {
        return entry.d_type == DT_DIR;
    }
    struct stat status {};
    return ::fstatat(::dirfd(in), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

// Not by the standard library, which ends the process where there is no memory for a name.
std::vector<std::string> fileNamesIn(const std::filesystem::path& folder) {
    const OpenFolder open(::opendir(folder.c_str()));
    if (!open) {
        failReading(folder, errno);
    }
    std::vector<std::string> names;
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(open.get());
        if (entry == nullptr) {
            break;
        }
        if (!isFolder(open.get(), *entry)) {
            names.emplace_back(entry->d_name);
        }
    }
    if (errno != 0) {
        failReading(folder, errno);
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace kovalune::shots
