// The remembered defaults for tools: the paths that the Option dialog takes, without the dialog.

#include "effect/Kovalune.h"
#include "effect/frame/EffectVersion.h"
#include "effect/params/DefaultsFile.h"
#include "effect/params/DefaultsSource.h"
#include "effect/params/DefaultsStore.h"
#include "effect/params/ParamRegistry.h"
#include "effect/share/HostCode.h"

#include <utility>
#include <vector>

namespace kovalune {
namespace {

/// Of the thread: others may open hosts meanwhile.
thread_local bool threadWantsFactory = false;

/// In number and kinds; what a tool's host registered with another effect may not even be as long.
bool areTheEffects(std::span<const PF_ParamDef> params) {
    const std::vector<BaseParam*>& list = paramRegistry().byIndex();
    if (list.empty() || params.size() != list.size()) {
        return false;
    }
    for (std::size_t index = 1; index < list.size(); ++index) {
        if (params[index].param_type != list[index]->def.param_type) {
            return false;
        }
    }
    return true;
}

} // namespace

std::string defaultsPath() {
    char path[kDefaultsPathBytes];
    ignored(makeDefaultsPath(path)); // the path is empty then
    return path;
}

std::string defaultsSection() {
    return sectionNameOfThisVersion();
}

DefaultsResult rememberDefaults(const std::string& path, std::span<const PF_ParamDef> params, int* reason) {
    if (!areTheEffects(params)) {
        return DefaultsResult::kWrongParameters;
    }
    std::vector<PF_ParamDef> copies(params.begin(), params.end());
    std::vector<PF_ParamDef*> array;
    array.reserve(copies.size());
    for (PF_ParamDef& def : copies) {
        array.push_back(&def);
    }
    const bool existed = platform::nameIsTaken(path.c_str());
    const std::vector<std::string> madeFolders = missingDefaultsFolders(path.c_str());
    int why = 0;
    bool done = makeDefaultsFolder(path.c_str());
    if (!done) {
        why = platform::lastError();
    } else {
        done = saveDefaults(array.data(), path.c_str(), &why);
    }
    if (done) {
        return DefaultsResult::kDone;
    }
    // Some of the values may be in it.
    if (!existed) {
        platform::deleteFile(path.c_str());
    }
    for (const std::string& folder : madeFolders) {
        platform::removeFolder(folder.c_str());
    }
    if (reason != nullptr) {
        *reason = why;
    }
    return DefaultsResult::kFailed;
}

DefaultsResult forgetDefaults(const std::string& path) {
    switch (removeDefaultsFile(path.c_str())) {
    case platform::Deletion::kDone:
        return DefaultsResult::kDone;
    case platform::Deletion::kMissing:
        return DefaultsResult::kNothingThere;
    default:
        return DefaultsResult::kFailed;
    }
}

bool isDefaultRemembered(const std::string& path, const PF_ParamDef& param) {
    if (param.param_type != PF_Param_COLOR) {
        return isRemembered(param.name, path.c_str());
    }
    for (const char channel : {'r', 'g', 'b'}) {
        if (isRemembered(colorKey(param.name, channel).c_str(), path.c_str())) {
            return true;
        }
    }
    return false;
}

FactoryDefaultsScope::FactoryDefaultsScope() : outer_(std::exchange(threadWantsFactory, true)) {
    factorySource.store([] { return threadWantsFactory; }, std::memory_order_release);
}

FactoryDefaultsScope::~FactoryDefaultsScope() {
    threadWantsFactory = outer_;
}

} // namespace kovalune
