#include "host/AnsiCallbacks.h"

#include "host/CallbackSupport.h"

#include <clocale>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace kovalune::host {

namespace {

void logPlain(const char* call) noexcept {
    shielded([&] {
        if (CommandContext* context = currentContext()) {
            logCall(*context, call, noArguments);
        }
    });
}

#if defined(_WIN32)

/// Programs start in the "C" locale there, and no part of this host leaves it.
class PlainLocaleScope {};

#else

/// Numbers with a decimal point on this thread, whatever locale the program has set.
class PlainLocaleScope {
public:
    PlainLocaleScope() : previous_(uselocale(plain())) {}
    ~PlainLocaleScope() { uselocale(previous_); }
    PlainLocaleScope(const PlainLocaleScope&) = delete;
    PlainLocaleScope& operator=(const PlainLocaleScope&) = delete;

private:
    /// Kept to the end of the program. Null for want of memory, which then changes nothing.
    static locale_t plain() {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }

    const locale_t previous_;
};

#endif

int printPlainly(A_char* buffer, const A_char* format, std::va_list arguments) {
    [[maybe_unused]] const PlainLocaleScope locale;
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the caller's is begun
    return std::vsprintf(buffer, format, arguments);
}

/// The interface gives no size: room for the text is the effect's care.
int printText(A_char* buffer, const A_char* format, ...) {
    logPlain("sprintf");
    std::va_list arguments;
    va_start(arguments, format);
    const int length = printPlainly(buffer, format, arguments);
    va_end(arguments);
    return length;
}

A_char* copyText(A_char* to, const A_char* from) {
    logPlain("strcpy");
    std::memcpy(to, from, std::strlen(from) + 1);
    return to;
}

} // namespace

PF_ANSICallbacks ansiCallbacks() {
    PF_ANSICallbacks table{};
    table.atan = [](double x) { return std::atan(x); };
    table.atan2 = [](double y, double x) { return std::atan2(y, x); };
    table.ceil = [](double x) { return std::ceil(x); };
    table.cos = [](double x) { return std::cos(x); };
    table.exp = [](double x) { return std::exp(x); };
    table.fabs = [](double x) { return std::fabs(x); };
    table.floor = [](double x) { return std::floor(x); };
    table.fmod = [](double x, double y) { return std::fmod(x, y); };
    table.hypot = [](double x, double y) { return std::hypot(x, y); };
    table.log = [](double x) { return std::log(x); };
    table.log10 = [](double x) { return std::log10(x); };
    table.pow = [](double x, double y) { return std::pow(x, y); };
    table.sin = [](double x) { return std::sin(x); };
    table.sqrt = [](double x) { return std::sqrt(x); };
    table.tan = [](double x) { return std::tan(x); };
    table.sprintf = printText;
    table.strcpy = copyText;
    table.asin = [](double x) { return std::asin(x); };
    table.acos = [](double x) { return std::acos(x); };
    return table;
}

} // namespace kovalune::host
