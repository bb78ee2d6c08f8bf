// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "ZORMathematics.h"
#include "cpu_quota.h"

namespace {

// A machine's /proc and /sys in a folder of its own.
class Machine {
 public:
  explicit Machine(const std::map<std::string, std::string>& files) {
    for (const auto& [name, content] : files) {
      const std::filesystem::path path = root_ / name;
      std::filesystem::create_directories(path.parent_path());
      std::ofstream(path) << content;
    }
  }
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;
  ~Machine() { std::filesystem::remove_all(root_); }
  std::string root() const { return root_.string(); }

 private:
  std::filesystem::path root_ = std::filesystem::temp_directory_path() / ("zortav_machine_" + std::to_string(getpid()));
};

struct Case {
  const char* what;
  std::map<std::string, std::string> files;
  int32_t expected;
};

void check(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    const Machine machine(c.files);
    EXPECT_EQ(zortav::cpu_quota(machine.root()), c.expected) << c.what;
  }
}

TEST(CpuQuota, Version2) {
  const std::string own = "proc/self/cgroup";
  const std::string top = "sys/fs/cgroup/";
  check({
      {"neither /proc nor /sys", {}, 0},
      {"no quota", {{own, "0::/a\n"}, {top + "a/cpu.max", "max 100000\n"}}, 0},
      {"rounded up", {{own, "0::/a\n"}, {top + "a/cpu.max", "150000 100000\n"}}, 2},
      {"an exact number", {{own, "0::/a\n"}, {top + "a/cpu.max", "300000 100000\n"}}, 3},
      {"a hundredth of a processor", {{own, "0::/a\n"}, {top + "a/cpu.max", "1000 100000\n"}}, 1},
      {"the least on the way up",
       {{own, "0::/a/b/c\n"},
        {top + "a/b/c/cpu.max", "max 100000\n"},
        {top + "a/b/cpu.max", "500000 100000\n"},
        {top + "a/cpu.max", "400000 50000\n"},
        {top + "cpu.max", "1600000 100000\n"}},
       5},
      {"the group above decides",
       {{own, "0::/a/b\n"}, {top + "a/b/cpu.max", "500000 100000\n"}, {top + "a/cpu.max", "200000 100000\n"}},
       2},
      {"a sibling does not count",
       {{own, "0::/a/b\n"}, {top + "a/b/cpu.max", "500000 100000\n"}, {top + "a/c/cpu.max", "100000 100000\n"}},
       5},
      {"the top of a container's namespace", {{own, "0::/\n"}, {top + "cpu.max", "200000 100000\n"}}, 2},
      {"only the container's own subtree is mounted",
       {{own, "0::/docker/4711\n"}, {top + "cpu.max", "200000 100000\n"}},
       2},
      {"outside the namespace",
       {{own, "0::/../other\n"}, {top + "cpu.max", "200000 100000\n"}, {"sys/fs/other/cpu.max", "100000 100000\n"}},
       2},
      {"/sys without /proc", {{top + "cpu.max", "200000 100000\n"}}, 2},
      {"a colon in the path", {{own, "0::/a:b\n"}, {top + "a:b/cpu.max", "200000 100000\n"}}, 2},
  });
}

TEST(CpuQuota, Version1) {
  const std::string own = "proc/self/cgroup";
  const std::string top = "sys/fs/cgroup/cpu/";
  const std::string lines = "9:cpuset:/x\n4:cpuacct,cpu:/a/b\n1:name=systemd:/y\n0::/z\n";
  check({
      {"no quota",
       {{own, lines}, {top + "a/b/cpu.cfs_quota_us", "-1\n"}, {top + "a/b/cpu.cfs_period_us", "100000"}},
       0},
      {"rounded up",
       {{own, lines}, {top + "a/b/cpu.cfs_quota_us", "250000\n"}, {top + "a/b/cpu.cfs_period_us", "100000\n"}},
       3},
      {"the group above",
       {{own, lines},
        {top + "a/b/cpu.cfs_quota_us", "-1\n"},
        {top + "a/b/cpu.cfs_period_us", "100000\n"},
        {top + "a/cpu.cfs_quota_us", "100000\n"},
        {top + "a/cpu.cfs_period_us", "50000\n"}},
       2},
      {"the other mount point",
       {{own, lines},
        {"sys/fs/cgroup/cpu,cpuacct/a/cpu.cfs_quota_us", "100000\n"},
        {"sys/fs/cgroup/cpu,cpuacct/a/cpu.cfs_period_us", "100000\n"}},
       1},
      {"a quota of a group of another controller",
       {{own, lines}, {top + "x/cpu.cfs_quota_us", "100000\n"}, {top + "x/cpu.cfs_period_us", "100000\n"}},
       0},
      {"both versions: the least",
       {{own, lines},
        {top + "a/b/cpu.cfs_quota_us", "400000\n"},
        {top + "a/b/cpu.cfs_period_us", "100000\n"},
        {"sys/fs/cgroup/unified/z/cpu.max", "300000 100000\n"}},
       3},
  });
}

TEST(CpuQuota, WhatIsNotUnderstoodSetsNoQuota) {
  const std::string own = "proc/self/cgroup";
  const std::string quota = "sys/fs/cgroup/a/cpu.max";
  for (const char* content : {"", "\n", "max", "100000", "100000 0", "0 100000", "-100000 100000", "few many",
                              "9223372036854775807 1", "99999999999999999999 100000"}) {
    check({{content, {{own, "0::/a\n"}, {quota, content}}, 0}});
  }
  for (const char* line : {"", "0", "0:", "0:cpu", "::", "no group at all\n\n"}) {
    check({{line, {{own, line}, {quota, "100000 100000\n"}}, 0}});
  }
}

TEST(CpuQuery, IsBoundedByTheAffinityMask) {
  cpu_set_t whole;
  ASSERT_EQ(sched_getaffinity(0, sizeof whole, &whole), 0);
  const int32_t cores = ZORCpuQuery::GetCores();
  EXPECT_GE(cores, 1);
  EXPECT_LE(cores, CPU_COUNT(&whole));
  const int32_t quota = zortav::cpu_quota("");
  EXPECT_EQ(cores, quota > 0 && quota < CPU_COUNT(&whole) ? quota : CPU_COUNT(&whole));

  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(sched_getcpu(), &one);
  ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
  EXPECT_EQ(ZORCpuQuery::GetCores(), 1);
  sched_setaffinity(0, sizeof whole, &whole);
}

}  // namespace
