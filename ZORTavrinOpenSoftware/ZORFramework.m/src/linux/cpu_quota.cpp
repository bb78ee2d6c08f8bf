// SPDX-License-Identifier: MIT
// ceil(quota / period), the least along the path of control groups from the process up to the root.
//
// Source: the Linux kernel's documentation of control groups, version 2 (cpu.max) and version 1 (cpu.cfs_quota_us,
// cpu.cfs_period_us), and cgroups(7) for /proc/self/cgroup. Where a container shows only its own subtree, the path in
// /proc/self/cgroup leads nowhere, but the walk upward still ends at the mount's top, which is the container's group.
#include "cpu_quota.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <sstream>

namespace zortav {
namespace {

// A quota in microseconds of processor time per period; none unless both are positive.
struct Quota {
  std::int64_t quota = 0;
  std::int64_t period = 0;
};

Quota read_version_2(const std::string& group) {
  Quota q;
  // "max 100000" fails to read as a number and leaves no quota.
  std::ifstream(group + "/cpu.max") >> q.quota >> q.period;
  return q;
}

Quota read_version_1(const std::string& group) {
  Quota q;
  std::ifstream(group + "/cpu.cfs_quota_us") >> q.quota;
  std::ifstream(group + "/cpu.cfs_period_us") >> q.period;
  return q;
}

class Least {
 public:
  void take(Quota q) {
    if (q.quota > 0 && q.period > 0) {
      const std::int64_t processors = q.quota / q.period + (q.quota % q.period != 0 ? 1 : 0);
      least_ = std::min(least_, processors);
    }
  }
  std::int32_t value() const { return least_ > most ? 0 : static_cast<std::int32_t>(least_); }

 private:
  static constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
  std::int64_t least_ = most + 1;
};

// Visits the group and every group above it up to the mount's top.
void walk_up(const std::string& mount, std::string group, Quota (*read)(const std::string&), Least& least) {
  if (group.find("/..") != std::string::npos) {
    group.clear();  // outside what this process may see: only the top of the mount is meaningful
  }
  for (;;) {
    least.take(read(mount + group));
    const std::size_t slash = group.rfind('/');
    if (slash == std::string::npos) {
      return;
    }
    group.erase(slash);
  }
}

bool names_cpu(const std::string& controllers) {
  std::istringstream names(controllers);
  for (std::string name; std::getline(names, name, ',');) {
    if (name == "cpu") {
      return true;
    }
  }
  return false;
}

}  // namespace

std::int32_t cpu_quota(const std::string& root) {
  std::string group_2;
  std::string group_1;
  std::ifstream groups(root + "/proc/self/cgroup");
  for (std::string line; std::getline(groups, line);) {
    // number:controllers:path, where the path may hold colons itself
    const std::size_t first = line.find(':');
    const std::size_t second = first == std::string::npos ? first : line.find(':', first + 1);
    if (second == std::string::npos) {
      continue;
    }
    const std::string controllers = line.substr(first + 1, second - first - 1);
    if (controllers.empty()) {
      group_2 = line.substr(second + 1);
    } else if (names_cpu(controllers)) {
      group_1 = line.substr(second + 1);
    }
  }

  Least least;
  for (const char* mount : {"/sys/fs/cgroup", "/sys/fs/cgroup/unified"}) {
    walk_up(root + mount, group_2, read_version_2, least);
  }
  for (const char* mount : {"/sys/fs/cgroup/cpu", "/sys/fs/cgroup/cpu,cpuacct", "/sys/fs/cgroup/cpuacct,cpu"}) {
    walk_up(root + mount, group_1, read_version_1, least);
  }
  return least.value();
}

}  // namespace zortav
