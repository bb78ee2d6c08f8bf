// SPDX-License-Identifier: MIT
#include "cpu_quota.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "ZORMathematics.h"
#include "support/files.h"
#include "test_system.h"

namespace {

// A machine's /proc/self/cgroup, and files of its /sys/fs/cgroup. "cfs" stands for the two files that hold the quota
// and the period in the first version of control groups.
struct Case {
  const char* what;
  const char* own_groups;
  std::vector<std::pair<std::string, std::string>> files;
  int32_t expected;
};

void check(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    const zortav::test::ScratchFolder root;
    const auto write = [](const std::filesystem::path& file, const std::string& text) {
      zortav::test::write(file.string(), text + "\n");
    };
    write(root / "proc/self/cgroup", c.own_groups);
    for (const auto& [name, text] : c.files) {
      const std::filesystem::path path = root / ("sys/fs/cgroup/" + name);
      if (path.filename() == "cfs") {
        write(path.parent_path() / "cpu.cfs_quota_us", text.substr(0, text.find(' ')));
        write(path.parent_path() / "cpu.cfs_period_us", text.substr(text.find(' ') + 1));
      } else {
        write(path, text);
      }
    }
    EXPECT_EQ(zortav::cpu_quota(root.path()), c.expected) << c.what;
    EXPECT_EQ(zortav::cpu_quota(root / "empty"), 0) << "neither /proc nor /sys";
  }
}

TEST(CpuQuota, Version2) {
  check({
      {"no quota", "0::/a", {{"a/cpu.max", "max 100000"}}, 0},
      {"rounded up", "0::/a", {{"a/cpu.max", "150000 100000"}}, 2},
      {"an exact number", "0::/a", {{"a/cpu.max", "300000 100000"}}, 3},
      {"a hundredth of a processor", "0::/a", {{"a/cpu.max", "1000 100000"}}, 1},
      {"the least on the way up",
       "0::/a/b/c",
       {{"a/b/c/cpu.max", "max 100000"}, {"a/b/cpu.max", "150000 50000"}, {"a/cpu.max", "400000 100000"}},
       3},
      {"the top decides", "0::/a", {{"a/cpu.max", "500000 100000"}, {"cpu.max", "200000 100000"}}, 2},
      {"a sibling does not count", "0::/a/b", {{"a/b/cpu.max", "5 1"}, {"a/c/cpu.max", "1 1"}}, 5},
      {"the top of a container's namespace", "0::/", {{"cpu.max", "200000 100000"}}, 2},
      {"only the container's own subtree is mounted", "0::/docker/4711", {{"cpu.max", "200000 100000"}}, 2},
      {"outside the namespace", "0::/../other", {{"cpu.max", "2 1"}, {"../other/cpu.max", "1 1"}}, 2},
      {"a colon in the path", "0::/a:b", {{"a:b/cpu.max", "200000 100000"}}, 2},
  });
}

TEST(CpuQuota, Version1) {
  const char* own = "4:cpuacct,cpu:/a/b\n9:cpuset:/x\n1:name=systemd:/y\n0::/z";
  check({
      {"no quota", own, {{"cpu/a/b/cfs", "-1 100000"}}, 0},
      {"rounded up", own, {{"cpu/a/b/cfs", "250000 100000"}}, 3},
      {"the group above", own, {{"cpu/a/b/cfs", "-1 100000"}, {"cpu/a/cfs", "100000 50000"}}, 2},
      {"the other mount point", own, {{"cpu,cpuacct/a/cfs", "100000 100000"}}, 1},
      {"a group of another controller", own, {{"cpu/x/cfs", "100000 100000"}}, 0},
      {"both versions", own, {{"cpu/a/b/cfs", "400000 100000"}, {"unified/z/cpu.max", "300000 100000"}}, 3},
  });
}

TEST(CpuQuota, WhatIsNotUnderstoodSetsNoQuota) {
  for (const char* quota : {"", "max", "100000", "100000 0", "0 100000", "-100000 100000", "few many",
                            "9223372036854775807 1", "99999999999999999999 100000"}) {
    check({{quota, "0::/a", {{"a/cpu.max", quota}}, 0}});
  }
  for (const char* own : {"", "0", "0:", "0:cpu", "::", "no group at all\n"}) {
    check({{own, own, {{"a/cpu.max", "100000 100000"}}, 0}});
  }
}

TEST(CpuQuery, IsTheLesserOfAffinityMaskAndQuota) {
  const int32_t quota = zortav::cpu_quota("");
  EXPECT_EQ(ZORCpuQuery::GetCores(), quota > 0 ? std::min(quota, zortest::processors()) : zortest::processors());
}

}  // namespace
