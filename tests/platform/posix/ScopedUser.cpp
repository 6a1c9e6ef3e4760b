// Both come from the environment.
#include "tests/platform/ScopedUser.h"

#include "tests/platform/ScopedVariable.h"

#include <memory>

namespace kovalune::platform {
namespace {

std::function<void()> setUntilCalled(const char* name, const std::string& value) {
    return [variable = std::make_shared<ScopedVariable>(name, value.c_str())]() mutable { variable.reset(); };
}

} // namespace

ScopedSettings::ScopedSettings(const std::string& folder)
    : restore_(setUntilCalled("XDG_CONFIG_HOME", folder)) {}

ScopedLanguage::ScopedLanguage(UserLanguage language)
    : restore_(setUntilCalled("LC_ALL", language == UserLanguage::kJapanese ? "ja_JP.UTF-8" : "C")) {}

} // namespace kovalune::platform
