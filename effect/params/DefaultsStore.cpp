#include "effect/params/DefaultsStore.h"

#include "effect/params/DefaultsFile.h"
#include "effect/params/ParamRegistry.h"
#include "effect/params/ReadOut.h"
#include "effect/platform/Ascii.h"
#include "effect/share/HostCode.h"

#include <string>

namespace kovalune {
namespace {

/// Everything before the last separator; empty if there is none. The last byte of a double-byte character may look
/// like a separator, but never after the folder for settings, where the names are our own.
std::string withoutLastComponent(const std::string& path) {
    const std::size_t separator = path.rfind(platform::kPathSeparator);
    return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

/// Where the removing of empty folders ends: the user's folder for settings, or where that is unknown, what the path has
/// ahead of the names that are our own.
std::string settingsFolderOf(const std::string& path) {
    char folder[kDefaultsPathBytes];
    if (platform::applicationDataFolder(folder, sizeof folder)) {
        return folder;
    }
    const std::string own = defaultsFileBelow({});
    const bool isOurs =
        path.size() > own.size() && platform::equalButForCase(path.substr(path.size() - own.size()), own);
    return isOurs ? path.substr(0, path.size() - own.size()) : withoutLastComponent(path);
}

} // namespace

bool makeDefaultsFolder(const char* path) {
    return platform::createFolders(withoutLastComponent(path).c_str());
}

std::vector<std::string> missingDefaultsFolders(const char* path) {
    std::vector<std::string> folders;
    for (std::string folder = withoutLastComponent(path);
         !folder.empty() && !platform::folderExists(folder.c_str()); folder = withoutLastComponent(folder)) {
        folders.push_back(folder);
    }
    return folders;
}

bool saveDefaults(PF_ParamDef** params, const char* path, int* reason) {
    if (params == nullptr) {
        return false;
    }
    GetParamFromArray getter(params);
    // Neither can fail with this getter.
    ignored(readParameters(nullptr, getter));
    ignored(giveBackParameters(getter));
    const std::vector<BaseParam*>& list = paramRegistry().byIndex();
    bool saved = true;
    for (std::size_t index = 1; index < list.size() && list[index] != nullptr; ++index) {
        if (!list[index]->saveDefault(path)) {
            if (saved && reason != nullptr) {
                *reason = platform::lastError();
            }
            saved = false;
        }
    }
    return saved;
}

platform::Deletion removeDefaultsFile(const char* path) {
    const std::string end = settingsFolderOf(path);
    const platform::Deletion result = platform::deleteFile(path);
    for (std::string rest = withoutLastComponent(path);
         !rest.empty() && !platform::equalButForCase(rest, end); rest = withoutLastComponent(rest)) {
        if (!platform::removeFolder(rest.c_str())) {
            break;
        }
    }
    return result;
}

} // namespace kovalune
