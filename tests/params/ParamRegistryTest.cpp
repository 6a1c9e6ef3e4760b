#include "effect/params/ParamRegistry.h"
#include "effect/params/ParamTypes.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace kovalune::test {
namespace {

/// Counts how many of its kind live.
class CountedParam final : public BaseParam {
public:
    explicit CountedParam(const char* name) : BaseParam({}, name, nullptr) { ++live; }
    ~CountedParam() override { --live; }
    PF_Err addToHost(PF_InData*, int32_t, const char*) override { return PF_Err_NONE; }
    static inline int live = 0;
};

void add(ParamRegistry& registry, const char* name, int32_t id, int32_t linkId = 0) {
    registry.add(std::make_unique<CountedParam>(name), id, linkId);
}

TEST(ParamRegistry, StartsItsIndexCounterAtOne) {
    ParamRegistry registry;
    EXPECT_EQ(registry.indexCounter(), 1);
    EXPECT_EQ(registry.takeIndex(), 1);
    EXPECT_EQ(registry.takeIndex(), 2);
    EXPECT_EQ(registry.indexCounter(), 3);
}

TEST(ParamRegistry, GivesEachObjectTheNextIndex) {
    const int32_t next = paramRegistry().indexCounter();
    const CountedParam first("first");
    const CountedParam second("second");
    EXPECT_EQ(first.paramIndex, next);
    EXPECT_EQ(second.paramIndex, next + 1);
    EXPECT_EQ(first.diskId, 0);
    EXPECT_EQ(first.linkId, 0);
    EXPECT_EQ(first.linkIndex, 0);
}

TEST(ParamRegistry, SortsByIdAndByIndex) {
    ParamRegistry registry;
    add(registry, "a", 30);
    add(registry, "b", 10);
    add(registry, "c", 20);
    registry.finish();
    ASSERT_EQ(registry.byIndex().size(), 4U);
    EXPECT_EQ(registry.byIndex()[0], nullptr);
    EXPECT_STREQ(registry.byIndex()[1]->label, "a");
    EXPECT_STREQ(registry.byIndex()[2]->label, "b");
    EXPECT_STREQ(registry.byIndex()[3]->label, "c");
    EXPECT_STREQ(registry.findById(10)->label, "b");
    EXPECT_STREQ(registry.findById(20)->label, "c");
    EXPECT_STREQ(registry.findById(30)->label, "a");
}

TEST(ParamRegistry, NeverFindsANeighbour) {
    ParamRegistry registry;
    EXPECT_EQ(registry.findById(1), nullptr);
    add(registry, "a", 10);
    add(registry, "b", 20);
    registry.finish();
    for (const int32_t id : {-1, 0, 9, 11, 19, 21, 1000}) {
        EXPECT_EQ(registry.findById(id), nullptr) << id;
    }
}

TEST(ParamRegistry, ResolvesLinksBothWays) {
    ParamRegistry registry;
    add(registry, "a", 30, 10);
    add(registry, "b", 10, 30);
    add(registry, "c", 20, 99);
    add(registry, "d", 40);
    registry.finish();
    EXPECT_EQ(registry.findById(30)->linkIndex, registry.findById(10)->paramIndex);
    EXPECT_EQ(registry.findById(10)->linkIndex, registry.findById(30)->paramIndex);
    EXPECT_EQ(registry.findById(20)->linkId, 99);
    EXPECT_EQ(registry.findById(20)->linkIndex, 0);
    EXPECT_EQ(registry.findById(40)->linkIndex, 0);
}

TEST(ParamRegistry, DeletesItsObjectsAndKeepsItsCounter) {
    ParamRegistry registry;
    const int before = CountedParam::live;
    registry.takeIndex();
    add(registry, "a", 10);
    add(registry, "b", 20);
    registry.finish();
    EXPECT_EQ(CountedParam::live, before + 2);
    registry.clear();
    EXPECT_EQ(CountedParam::live, before);
    EXPECT_EQ(registry.findById(10), nullptr);
    EXPECT_TRUE(registry.byIndex().empty());
    EXPECT_EQ(registry.indexCounter(), 2);
}

TEST(ParamRegistry, CutsTheSectionNameTo127Bytes) {
    ParamRegistry registry;
    EXPECT_STREQ(registry.sectionName(), "");
    registry.setSectionName("Version=1.0");
    EXPECT_STREQ(registry.sectionName(), "Version=1.0");
    registry.setSectionName(std::string(200, 'x').c_str());
    EXPECT_EQ(registry.sectionName(), std::string(127, 'x'));
    registry.setSectionName("");
    EXPECT_STREQ(registry.sectionName(), "");
}

} // namespace
} // namespace kovalune::test
