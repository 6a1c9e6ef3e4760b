// The process's locale for as long as a scope lasts: at its end the locale is what it was before. For calls into code that
// sets it, as an effect's first call may. The locale belongs to the whole process, so no other thread may set it meanwhile.
#pragma once

#include <clocale>
#include <string>

namespace kovalune::render {

class LocaleGuard {
public:
    LocaleGuard() : before_(std::setlocale(LC_ALL, nullptr)) {}
    ~LocaleGuard() { std::setlocale(LC_ALL, before_.c_str()); }
    LocaleGuard(const LocaleGuard&) = delete;
    LocaleGuard& operator=(const LocaleGuard&) = delete;

private:
    const std::string before_;
};

} // namespace kovalune::render
