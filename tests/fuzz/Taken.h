// An input of a fuzz target taken apart: numbers from its first bytes on. Past its end all are 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace kovalune::test {

class Taken {
public:
    Taken(const uint8_t* data, std::size_t size) : rest_(data, size) {}

    uint8_t byte() {
        if (rest_.empty()) {
            return 0;
        }
        const uint8_t first = rest_.front();
        rest_ = rest_.subspan(1);
        return first;
    }

    bool bit() { return (byte() & 1U) != 0; }

    /// 0 to limit - 1; limits up to 256.
    int32_t below(int32_t limit) { return byte() % limit; }

    template <class Value, std::size_t count>
    const Value& oneOf(const Value (&values)[count]) {
        return values[static_cast<std::size_t>(below(static_cast<int32_t>(count)))];
    }

    int32_t word() {
        uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            value = value << 8U | byte();
        }
        return static_cast<int32_t>(value);
    }

    /// Mostly near 0, sometimes anything.
    int32_t number() {
        const uint8_t small = byte();
        return small == 255 ? word() : int32_t{small} - 100;
    }

    /// Up to the next byte of 0, or all that is left.
    std::string text() {
        std::string result;
        while (!rest_.empty()) {
            const uint8_t next = byte();
            if (next == 0) {
                break;
            }
            result += static_cast<char>(next);
        }
        return result;
    }

    std::string restAsText() {
        std::string result(rest_.begin(), rest_.end());
        rest_ = {};
        return result;
    }

private:
    std::span<const uint8_t> rest_;
};

} // namespace kovalune::test
