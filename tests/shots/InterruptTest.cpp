// What a signal does to work that is in the middle of something.

#include "render/shots/EndingSignals.h"
#include "render/shots/SignalWatch.h"

#include <gtest/gtest.h>

#include <csignal>
#include <new>
#include <stdexcept>

namespace kovalune::test {

using namespace shots;

namespace {

template <class Thrown>
void throwDuring(const Thrown& thrown, int signalNumber) {
    Interrupt interrupt;
    interrupt.during([&] {
        if (signalNumber != 0) {
            std::raise(signalNumber);
        }
        throw thrown;
    });
}

/// Each in a process of its own: the thread sanitizer does not see that a signal has its default meaning again.
class InterruptBySignal : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Ending, InterruptBySignal, testing::ValuesIn(kEndingSignals),
                         testing::PrintToStringParamName());

TEST_P(InterruptBySignal, TakesThePlaceOfAnException) {
    EXPECT_THROW(throwDuring(std::logic_error("a mistake"), GetParam()), Interruption);
}

TEST_P(InterruptBySignal, TakesThePlaceOfALackOfMemory) {
    EXPECT_THROW(throwDuring(std::bad_alloc(), GetParam()), Interruption);
}

TEST_P(InterruptBySignal, TakesThePlaceOfANumberThatIsThrown) {
    EXPECT_THROW(throwDuring(516L, GetParam()), Interruption);
}

TEST(Interrupt, LeavesWhatIsThrownAsItIsWithoutASignal) {
    EXPECT_THROW(throwDuring(std::logic_error("a mistake"), 0), std::logic_error);
    EXPECT_THROW(throwDuring(516L, 0), long);
}

} // namespace
} // namespace kovalune::test
