// What the system says of the user, for the length of one test: the folder for settings and the language.
#pragma once

#include <functional>
#include <string>

namespace kovalune::test {

/// The folder for settings, which need not be there. Throws where the system knows another
/// one all the same, so that a test never comes near the user's own.
class ScopedSettings {
public:
    explicit ScopedSettings(const std::string& folder);
    ScopedSettings(const ScopedSettings&) = delete;
    ScopedSettings& operator=(const ScopedSettings&) = delete;
    ~ScopedSettings() { restore_(); }

private:
    std::function<void()> restore_;
};

enum class UserLanguage { kEnglish, kJapanese };

/// What the active code page tells of the user.
class ScopedLanguage {
public:
    explicit ScopedLanguage(UserLanguage language);
    ScopedLanguage(const ScopedLanguage&) = delete;
    ScopedLanguage& operator=(const ScopedLanguage&) = delete;
    ~ScopedLanguage() { restore_(); }

private:
    std::function<void()> restore_;
};

} // namespace kovalune::test
