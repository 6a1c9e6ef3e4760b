// What the process's first call does to its locale. Every test here needs a process of its own.

#include "hostapi/EntryPoint.h"

#include "effect/params/ParamRegistry.h"
#include "tests/frame/StubHost.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

PF_Err send(StubHost& host, PF_Cmd cmd) {
    return EntryPointFunc(cmd, &host.in, &host.out, nullptr, nullptr, nullptr);
}

TEST(FirstCallOnce, TakesTheUsersLocale) {
    StubHost host;
    ASSERT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    ASSERT_EQ(setenv("LC_ALL", "C.UTF-8", 1), 0);
    EXPECT_EQ(send(host, 2), 0);
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C.UTF-8");
}

TEST(FirstCallOnce, IsNotRepeated) {
    StubHost host;
    ASSERT_EQ(setenv("LC_ALL", "C.UTF-8", 1), 0);
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
