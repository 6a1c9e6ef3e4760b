// What the process's first call does to its locale. Every test here needs a process of its own.

#include "hostapi/EntryPoint.h"

#include "effect/params/ParamRegistry.h"
#include "tests/frame/StubHost.h"
#include "tests/platform/ScopedVariable.h"

#include <clocale>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

PF_Err send(StubHost& host, PF_Cmd cmd) {
    return EntryPointFunc(cmd, &host.in, &host.out, nullptr, nullptr, nullptr);
}

/// A user whose locale is another than that of a process that starts.
class FirstCallOnce : public testing::Test {
protected:
    FirstCallOnce() {
        const char* const locale = std::setlocale(LC_ALL, "");
        usersLocale_ = locale != nullptr ? locale : "none";
        std::setlocale(LC_ALL, "C");
        EXPECT_NE(usersLocale_, "C");
    }

    // POSIX systems ask the variable, Windows the user's settings.
    const ScopedVariable variable_{"LC_ALL", "C.UTF-8"};
    std::string usersLocale_;
};

TEST_F(FirstCallOnce, TakesTheUsersLocale) {
    StubHost host;
    ASSERT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    EXPECT_EQ(send(host, 2), 0);
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), usersLocale_);
}

TEST_F(FirstCallOnce, IsNotRepeated) {
    StubHost host;
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETUP), 0);
    const BaseParam* const view = paramRegistry().findById(1);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETUP), 0);
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    EXPECT_EQ(paramRegistry().findById(1), view);
    EXPECT_EQ(paramRegistry().indexCounter(), 58);
}

} // namespace
} // namespace kovalune::test
