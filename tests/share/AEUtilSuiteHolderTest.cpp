#include "effect/share/AEUtil/SuiteHolder.h"
#include "tests/frame/StubHost.h"

#include <array>
#include <gtest/gtest.h>
#include <stdexcept>
#include <utility>

namespace AEUtil {
namespace {

using kovalune::test::kFillMatteSuiteText;
using kovalune::test::kHandleSuiteText;
using kovalune::test::StubHost;
using kovalune::test::stubSuite;
using Texts = std::vector<std::string>;

/// The code thrown as a long by `work`, 0 if it throws nothing.
template <class Work>
long thrownLong(Work&& work) {
    try {
        work();
    } catch (long code) {
        return code;
    }
    return 0;
}

TEST(SuiteHolder, ThrowsWithoutABasicSuite) {
    EXPECT_EQ(thrownLong([] { const SuiteHolder holder(nullptr); }), 516);
}

TEST(SuiteHolder, AsksForNothingOnItsOwn) {
    StubHost host;
    { const SuiteHolder holder(&host.basic); }
    EXPECT_EQ(host.callTexts, Texts{});
}

TEST(SuiteHolder, AcquiresOnceAndReleasesOnce) {
    StubHost host;
    {
        SuiteHolder holder(&host.basic);
        const PFHandleSuite1& first = holder.handles();
        const PFHandleSuite1& second = holder.handles();
        EXPECT_EQ(&first, &second);
        EXPECT_EQ(&first, stubSuite(kHandleSuiteText));
        EXPECT_EQ(host.suiteBalance(), 1);
    }
    EXPECT_EQ(host.callTexts,
              (Texts{"AcquireSuite " + kHandleSuiteText, "ReleaseSuite " + kHandleSuiteText}));
}

TEST(SuiteHolder, GivesEachSuiteByItsNameAndVersion) {
    StubHost host;
    {
        SuiteHolder holder(&host.basic);
        EXPECT_EQ(&holder.worldTransform(), stubSuite("PF World Transform Suite 1"));
        EXPECT_EQ(&holder.fillMatte(), stubSuite(kFillMatteSuiteText));
        EXPECT_EQ(&holder.handles(), stubSuite(kHandleSuiteText));
        EXPECT_EQ(&holder.world1(), stubSuite("PF World Suite 1"));
        EXPECT_EQ(host.callTexts,
                  (Texts{"AcquireSuite PF World Transform Suite 1", "AcquireSuite " + kFillMatteSuiteText,
                         "AcquireSuite " + kHandleSuiteText, "AcquireSuite PF World Suite 1"}));
    }
    EXPECT_EQ(host.count("ReleaseSuite"), 4);
}

TEST(SuiteHolder, ReportsAMissingSuiteAsALong) {
    StubHost host;
    host.missingSuites = {kFillMatteSuiteText};
    SuiteHolder holder(&host.basic);
    EXPECT_EQ(thrownLong([&] { holder.fillMatte(); }), 516);
    EXPECT_EQ(thrownLong([&] { holder.handles(); }), 0);
}

TEST(SuiteHolder, ReportsANullTableAsALong) {
    StubHost host;
    host.emptySuites = {kFillMatteSuiteText};
    {
        SuiteHolder holder(&host.basic);
        EXPECT_EQ(thrownLong([&] { holder.fillMatte(); }), 516);
    }
    EXPECT_EQ(host.count("ReleaseSuite"), 0);
}

TEST(SuiteHolder, AsksAgainWhereASuiteWasMissing) {
    StubHost host;
    host.missingSuites = {kHandleSuiteText};
    SuiteHolder holder(&host.basic);
    EXPECT_EQ(thrownLong([&] { holder.handles(); }), 516);
    host.missingSuites.clear();
    EXPECT_EQ(&holder.handles(), stubSuite(kHandleSuiteText));
}

TEST(SuiteHolder, ReleasesWhenAnExceptionLeavesTheScope) {
    StubHost host;
    try {
        SuiteHolder holder(&host.basic);
        holder.handles();
        holder.fillMatte();
        throw std::runtime_error("any");
    } catch (const std::runtime_error&) {
        EXPECT_EQ(host.count("ReleaseSuite"), 2);
    }
    EXPECT_EQ(host.suiteBalance(), 0);
}

constexpr std::array<int32_t, 2> kNewFirst = {2, 1};

TEST(OwnedSuite, TakesTheFirstVersionAndAsksForNoOther) {
    StubHost host;
    {
        const OwnedSuite suite(&host.basic, kPFWorldSuite, kNewFirst);
        EXPECT_EQ(suite.table(), stubSuite("PF World Suite 2"));
        EXPECT_EQ(suite.version(), 2);
    }
    EXPECT_EQ(host.callTexts, (Texts{"AcquireSuite PF World Suite 2", "ReleaseSuite PF World Suite 2"}));
}

TEST(OwnedSuite, FallsBackToTheNextVersion) {
    StubHost host;
    for (const bool empty : {false, true}) {
        (empty ? host.emptySuites : host.missingSuites) = {"PF World Suite 2"};
        const OwnedSuite suite(&host.basic, kPFWorldSuite, kNewFirst);
        EXPECT_EQ(suite.table(), stubSuite("PF World Suite 1"));
        EXPECT_EQ(suite.version(), 1);
        host.missingSuites.clear();
    }
}

TEST(OwnedSuite, GivesNullWithoutAnyOfThem) {
    StubHost host;
    host.missingSuites = {"PF World Suite 1", "PF World Suite 2"};
    EXPECT_EQ(OwnedSuite(&host.basic, kPFWorldSuite, kNewFirst).table(), nullptr);
    EXPECT_EQ(host.count("AcquireSuite"), 2);
    EXPECT_EQ(host.count("ReleaseSuite"), 0);
}

TEST(OwnedSuite, IsReleasedOnceHoweverItIsHandedOn) {
    StubHost host;
    {
        OwnedSuite first(&host.basic, kPFWorldSuite, kNewFirst);
        OwnedSuite second = std::move(first);
        OwnedSuite third;
        third = std::move(second);
        EXPECT_EQ(host.suiteBalance(), 1);
        third.release();
        EXPECT_EQ(third.table(), nullptr);
        EXPECT_EQ(host.suiteBalance(), 0);
    }
    EXPECT_EQ(host.count("ReleaseSuite"), 1);
}

TEST(RequireBasicSuite, ThrowsWithoutOneAndAsksForNothing) {
    StubHost host;
    EXPECT_EQ(thrownLong([] { requireBasicSuite(nullptr); }), 516);
    EXPECT_EQ(thrownLong([&] { requireBasicSuite(&host.basic); }), 0);
    EXPECT_EQ(host.callTexts, Texts{});
}

TEST(OptionalSuite, HoldsAVersionForItsScope) {
    StubHost host;
    {
        const OptionalSuite<PFWorldSuite2> suite(&host.basic, kPFWorldSuite, 2);
        EXPECT_EQ(suite.get(), stubSuite("PF World Suite 2"));
        EXPECT_EQ(suite.acquireError(), 0);
    }
    EXPECT_EQ(host.callTexts, (Texts{"AcquireSuite PF World Suite 2", "ReleaseSuite PF World Suite 2"}));
}

TEST(OptionalSuite, GivesNullWithoutThrowingWhereTheVersionIsMissing) {
    StubHost host;
    host.missingSuites = {"PF World Suite 2"};
    {
        const OptionalSuite<PFWorldSuite2> suite(&host.basic, kPFWorldSuite, 2);
        EXPECT_EQ(suite.get(), nullptr);
        EXPECT_EQ(suite.acquireError(), 513);
    }
    EXPECT_EQ(host.count("ReleaseSuite"), 0);
}

} // namespace
} // namespace AEUtil
