// What control groups leave to the process, read from folders made as the system makes them.

#include "render/shots/ControlGroups.h"
#include "tests/support/TestFolder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace kovalune::test {

namespace {

class ControlGroups : public testing::Test {
protected:
    void put(const std::string& name, const std::string& text) const {
        const std::filesystem::path file = root_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }

    shots::GroupLimits limits() const { return shots::groupLimits(root_.path()); }

    const TestFolder root_;
};

constexpr char kSecondMount[] = "24 23 0:28 / /sys/fs/cgroup rw - cgroup2 cgroup2 rw\n";
constexpr char kFirstMounts[] =
    "32 31 0:29 / /sys/fs/cgroup/cpu,cpuacct rw shared:9 - cgroup cgroup rw,cpu,cpuacct\n"
    "35 31 0:32 / /sys/fs/cgroup/memory rw - cgroup cgroup rw,memory\n";

TEST_F(ControlGroups, SetNoLimitWhereThereAreNone) {
    EXPECT_EQ(limits().processors, std::nullopt);
    EXPECT_EQ(limits().freeMemory, std::nullopt);
    put("proc/self/mountinfo", std::string("broken\n") + kSecondMount);
    put("proc/self/cgroup", "nonsense\n0::/farm\n");
    put("sys/fs/cgroup/farm/cpu.max", "max 100000\n");
    put("sys/fs/cgroup/farm/memory.max", "max\n");
    put("sys/fs/cgroup/farm/memory.current", "5000\n");
    EXPECT_EQ(limits().processors, std::nullopt);
    EXPECT_EQ(limits().freeMemory, std::nullopt);
}

TEST_F(ControlGroups, OfTheSecondVersionTheTightestCounts) {
    put("proc/self/mountinfo", kSecondMount);
    put("proc/self/cgroup", "0::/farm/job/task\n");
    put("sys/fs/cgroup/farm/cpu.max", "250000 100000\n");
    put("sys/fs/cgroup/farm/job/cpu.max", "800000 100000\n");
    put("sys/fs/cgroup/farm/memory.max", "1000000\n");
    put("sys/fs/cgroup/farm/memory.current", "900000\n");
    put("sys/fs/cgroup/farm/memory.stat", "anon 100\ninactive_file 300000\n");
    put("sys/fs/cgroup/farm/job/memory.max", "2000000\n");
    put("sys/fs/cgroup/farm/job/memory.current", "500000\n");
    EXPECT_EQ(limits().processors, 3); // two and a half
    EXPECT_EQ(limits().freeMemory, 400000U);
    put("sys/fs/cgroup/farm/job/memory.high", "600000\n");
    EXPECT_EQ(limits().freeMemory, 100000U);
    put("sys/fs/cgroup/farm/job/memory.high", "400000\n");
    EXPECT_EQ(limits().freeMemory, 0U);
    put("sys/fs/cgroup/farm/job/task/cpu.max", "1000 100000\n");
    EXPECT_EQ(limits().processors, 1);
}

TEST_F(ControlGroups, OfTheFirstVersionEachControllerHasItsOwn) {
    put("proc/self/mountinfo", kFirstMounts);
    put("proc/self/cgroup", "4:memory:/farm\n2:cpu,cpuacct:/other\n0::/\n");
    put("sys/fs/cgroup/cpu,cpuacct/other/cpu.cfs_quota_us", "400000\n");
    put("sys/fs/cgroup/cpu,cpuacct/other/cpu.cfs_period_us", "100000\n");
    put("sys/fs/cgroup/cpu,cpuacct/cpu.cfs_quota_us", "-1\n");
    put("sys/fs/cgroup/cpu,cpuacct/cpu.cfs_period_us", "100000\n");
    put("sys/fs/cgroup/memory/memory.limit_in_bytes", "9223372036854771712\n");
    put("sys/fs/cgroup/memory/memory.usage_in_bytes", "70000\n");
    EXPECT_EQ(limits().processors, 4);
    EXPECT_EQ(limits().freeMemory, std::nullopt);
    put("sys/fs/cgroup/memory/farm/memory.limit_in_bytes", "80000\n");
    put("sys/fs/cgroup/memory/farm/memory.usage_in_bytes", "70000\n");
    put("sys/fs/cgroup/memory/farm/memory.stat", "inactive_file 1\ntotal_inactive_file 20000\n");
    EXPECT_EQ(limits().freeMemory, 30000U);
}

/// There the group has the machine's name for it, and the mount stands for it.
TEST_F(ControlGroups, InAContainerTheMountIsTheGroup) {
    put("proc/self/mountinfo", "24 23 0:28 /pods/a /sys/fs/cgroup rw - cgroup2 cgroup2 rw\n");
    put("proc/self/cgroup", "0::/pods/a/inner\n");
    put("sys/fs/cgroup/cpu.max", "600000 100000\n");
    EXPECT_EQ(limits().processors, 6);
    put("sys/fs/cgroup/inner/cpu.max", "200000 100000\n");
    EXPECT_EQ(limits().processors, 2);
    put("proc/self/cgroup", "0::/elsewhere/b\n");
    EXPECT_EQ(limits().processors, 6);
}

} // namespace

} // namespace kovalune::test
