// Sets an environment variable for one test and puts back what it was.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace kovalune::test {

class ScopedVariable {
public:
    // A null value removes the variable.
    ScopedVariable(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) {
            old_ = old;
        }
        set(value);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable() { set(old_ ? old_->c_str() : nullptr); }

private:
    void set(const char* value) {
#ifdef _WIN32
        ::_putenv_s(name_, value != nullptr ? value : "");
#else
        if (value != nullptr) {
            ::setenv(name_, value, 1);
        } else {
            ::unsetenv(name_);
        }
#endif
    }

    const char* name_;
    std::optional<std::string> old_;
};

} // namespace kovalune::test
