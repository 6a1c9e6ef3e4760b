// Under the memory sanitizer alone: what the standard library's compiled half writes of a number counts as written. The linker
// puts the function in the place of the library's (--wrap).

#include <charconv>
#include <sanitizer/msan_interface.h>

extern "C" {

std::to_chars_result __real__ZSt8to_charsPcS_dSt12chars_formati(char* first, char* last, double value,
                                                                std::chars_format form, int precision);

std::to_chars_result __wrap__ZSt8to_charsPcS_dSt12chars_formati(char* first, char* last, double value,
                                                                std::chars_format form, int precision) {
    std::to_chars_result result =
        __real__ZSt8to_charsPcS_dSt12chars_formati(first, last, value, form, precision);
    __msan_unpoison(&result, sizeof result);
    __msan_unpoison(first, static_cast<std::size_t>(result.ptr - first));
    return result;
}
}
