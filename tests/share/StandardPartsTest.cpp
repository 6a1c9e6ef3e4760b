#include "effect/share/StandardParts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

namespace kovalune {
namespace {

constexpr std::size_t kRoom = 512;

template <class Write>
std::string written(Write write) {
    std::array<char, kRoom> letters{};
    const std::to_chars_result result = write(letters.data(), letters.data() + letters.size());
    EXPECT_EQ(result.ec, std::errc());
    return {letters.data(), result.ptr};
}

template <class Number>
void expectBothWrite(Number number) {
    const auto expectForm = [number](auto... form) {
        const auto own = written(
            [&](char* first, char* last) { return plainchars::toChars(first, last, number, form...); });
        const auto library =
            written([&](char* first, char* last) { return std::to_chars(first, last, number, form...); });
        ASSERT_EQ(own, library);
    };
    expectForm();
    expectForm(std::chars_format::fixed);
    for (const int digits : {0, 1, 6, 17}) {
        expectForm(std::chars_format::fixed, digits);
        expectForm(std::chars_format::general, digits);
    }
}

template <class Number>
void expectBothRead(const std::string& text) {
    SCOPED_TRACE("'" + text + "'");
    Number own = 7;
    Number library = 7;
    const char* const first = text.data();
    const auto ownEnd = plainchars::fromChars(first, first + text.size(), own);
    const auto libraryEnd = std::from_chars(first, first + text.size(), library);
    ASSERT_EQ(ownEnd.ptr - first, libraryEnd.ptr - first);
    ASSERT_EQ(ownEnd.ec, libraryEnd.ec);
    ASSERT_EQ(std::isnan(own), std::isnan(library));
    if (!std::isnan(own)) {
        using Bytes = std::array<char, sizeof own>;
        ASSERT_EQ(bitCast<Bytes>(own), bitCast<Bytes>(library));
    }
}

TEST(StandardParts, WriteNumbersOfAnyBitsAsTheLibraryDoes) {
    std::mt19937_64 random(331);
    for (int round = 0; round < 3000 && !HasFailure(); ++round) {
        expectBothWrite(bitCast<double>(uint64_t{random()}));
        expectBothWrite(bitCast<float>(static_cast<uint32_t>(random())));
    }
}

TEST(StandardParts, WriteValuesOfControlsAsTheLibraryDoes) {
    for (int thousandth = -20000; thousandth < 20000 && !HasFailure(); thousandth += 7) {
        expectBothWrite(thousandth / 1000.0);
        expectBothWrite(static_cast<float>(thousandth) / 1000.0F);
    }
    for (int power = -140; power < 127 && !HasFailure(); ++power) {
        expectBothWrite(std::ldexp(1.0F, power));
        expectBothWrite(std::ldexp(-1.0, power));
    }
    for (const double number : {0.0, -0.0, 1e22, 1e23, 0.1, 123456789.0, 4e-7, 1e-5, 100000.0, 1e5 + 0.5}) {
        expectBothWrite(number);
    }
}

TEST(StandardParts, ReadTextsAsTheLibraryDoes) {
    for (const char* const text :
         {"",       "0",        "-0",   "1",        "1.",    ".5",    "-.5",   ".",      "-",
          "+1",     " 1",       "1e3",  "1E-3",     "1e",    "1e+",   "1e-",   "1ex",    "0x10",
          "inf",    "-inf",     "INF",  "infinity", "infin", "nan",   "-NaN",  "1e400",  "-1e400",
          "1e-400", "0e-99999", "1..2", "1.5.5",    "1e3.5", "12abc", "00012", "1e0005", "3,5"}) {
        expectBothRead<double>(text);
        expectBothRead<float>(text);
    }
}

TEST(StandardParts, ReadRandomTextsAsTheLibraryDoes) {
    std::mt19937_64 random(332);
    constexpr std::string_view kLetters = "0123456789012345678901234567890.e-+";
    for (int round = 0; round < 50000 && !HasFailure(); ++round) {
        std::string text(random() % 24, '0');
        for (char& letter : text) {
            letter = kLetters[random() % kLetters.size()];
        }
        expectBothRead<double>(text);
        expectBothRead<float>(text);
    }
}

TEST(StandardParts, SayThatATextHasNoRoom) {
    std::array<char, 3> letters{};
    EXPECT_EQ(plainchars::toChars(letters.data(), letters.data() + letters.size(), 0.125).ec,
              std::errc::value_too_large);
}

TEST(StandardParts, CastBitsAndShareBytes) {
    static_assert(bitCast<uint32_t>(1.0F) == 0x3F800000);
    uint8_t byte = 3;
    storeRelaxed(byte, 9);
    EXPECT_EQ(loadRelaxed(byte), 9);
}

} // namespace
} // namespace kovalune
