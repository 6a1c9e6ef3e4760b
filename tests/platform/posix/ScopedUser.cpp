// Both come from the environment.
#include "tests/platform/ScopedUser.h"

#include "effect/platform/Platform.h"
#include "tests/platform/ScopedVariable.h"

#include <memory>
#include <stdexcept>

namespace kovalune::test {
using namespace platform;
namespace {

std::function<void()> setUntilCalled(const char* name, const std::string& value) {
    return [variable = std::make_shared<ScopedVariable>(name, value.c_str())]() mutable { variable.reset(); };
}

std::string withoutSeparatorsAtItsEnd(const std::string& path) {
    return path.substr(0, path.find_last_not_of(kPathSeparator) + 1);
}

} // namespace

ScopedSettings::ScopedSettings(const std::string& folder)
    : restore_(setUntilCalled("XDG_CONFIG_HOME", folder)) {
    char known[4096];
    if (applicationDataFolder(known, sizeof known) && known != withoutSeparatorsAtItsEnd(folder)) {
        restore_();
        throw std::runtime_error(std::string("the folder for settings is ") + known);
    }
}

ScopedLanguage::ScopedLanguage(UserLanguage language)
    : restore_(setUntilCalled("LC_ALL", language == UserLanguage::kJapanese ? "ja_JP.UTF-8" : "C")) {}

} // namespace kovalune::test
