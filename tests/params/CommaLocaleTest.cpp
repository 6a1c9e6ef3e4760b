// The defaults file under a locale that writes a comma for the decimal point.

#include "effect/params/DefaultsFile.h"
#include "effect/share/StandardParts.h"
#include "tests/params/ExpectedTable.h"
#include "tests/params/RegisteredTable.h"
#include "tests/platform/ScopedVariable.h"
#include "tests/platform/TemporaryFolder.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

/// Sets such a locale. Windows has one; elsewhere it is made, where the system has the sources.
bool setCommaLocale([[maybe_unused]] const TemporaryFolder& folder) {
#ifdef _WIN32
    if (std::setlocale(LC_ALL, "German_Germany.1252") == nullptr) {
        return false;
    }
#else
    const std::string make =
        "localedef -i de_DE -f UTF-8 '" + folder.file("comma") + "' >/dev/null 2>&1 </dev/null";
    static_cast<void>(std::system(make.c_str())); // NOLINT(cert-env33-c)
    if (std::setlocale(LC_ALL, folder.file("comma").c_str()) == nullptr &&
        std::setlocale(LC_ALL, "comma") == nullptr) {
        return false;
    }
#endif
    char text[16];
    std::snprintf(text, sizeof text, "%.1f", 0.5);
    return std::string(text) == "0,5";
}

class CommaLocale : public testing::Test {
protected:
    void SetUp() override {
        if (!setCommaLocale(locales_)) {
            GTEST_SKIP() << "no locale with a decimal comma can be made here";
        }
    }
    void TearDown() override { std::setlocale(LC_ALL, "C"); }

private:
    const TemporaryFolder locales_;
    const ScopedVariable path_{"LOCPATH", locales_.path().c_str()};
};

TEST_F(CommaLocale, NumbersKeepTheirPoint) {
    EXPECT_EQ(formatNumber(12.25), "12.250000");
    EXPECT_EQ(parseNumber("12.25"), 12.25);
    EXPECT_EQ(parseNumber("12,25"), 12.0);
}

TEST_F(CommaLocale, RegistrationReadsAndWritesPoints) {
    const TemporaryFolder folder;
    const std::string path = folder.write("Kovalune.ini", "[Version=1.0]\r\nBlur Amount=12.25\r\n");
    StubHost host;
    ASSERT_EQ(registerTable(host, path.c_str()), 0);
    EXPECT_EQ(host.params.at(3).u.fs_d.value, 12.25);
    EXPECT_EQ(host.params.at(25).u.fs_d.value, 0.0); // a fall-back goes the same way
    EXPECT_EQ(host.params.at(23).u.fs_d.value, 10.0);
    EXPECT_TRUE(builtTable().findById(54)->saveDefault(path.c_str()));
    EXPECT_EQ(contentOf(path), "[Version=1.0]\r\nBlur Amount=12.250000\r\n");
}

#ifndef _WIN32 // where the library's own forms are always there

/// What takes the library's place where it has none of its own.
TEST_F(CommaLocale, NumbersKeepTheirPointWithoutTheLibraryToo) {
    char text[32];
    const auto written = plainchars::toChars(text, text + sizeof text, 12.25);
    EXPECT_EQ(std::string(text, written.ptr), "12.25");
    double read = 0.0;
    const auto end = plainchars::fromChars(text, written.ptr, read);
    EXPECT_EQ(end.ptr, written.ptr);
    EXPECT_EQ(read, 12.25);
    EXPECT_STREQ(std::localeconv()->decimal_point, ","); // the program's own stays
}

#endif

} // namespace
} // namespace kovalune::test
