// SPDX-License-Identifier: MIT
#include "small_disk.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

namespace zortest {
namespace {

// Mounts of the process's own, which end with it. Whoever is not the superuser is made one of a name space.
bool make_own_mounts() {
  const uid_t user = geteuid();
  const gid_t group = getegid();
  if (unshare(CLONE_NEWNS) != 0) {
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
      return false;
    }
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
    std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
  }
  return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool take_own_mounts() {
  static const bool own = make_own_mounts();
  return own;
}

}  // namespace

SmallDisk::SmallDisk(std::size_t bytes, int files) {
  take_own_mounts();
  const std::string room = "size=" + std::to_string(bytes) + ",nr_inodes=" + std::to_string(files + 1);
  is_there_ = mount("none", path().c_str(), "tmpfs", 0, room.c_str()) == 0;
}

SmallDisk::~SmallDisk() {
  if (is_there_) {
    umount2(path().c_str(), MNT_DETACH);
  }
}

const std::string& SmallDisk::refusal() {
  static const std::string reason =
      take_own_mounts() && SmallDisk(1).is_there_
          ? ""
          : std::string("no file system of the test's own can be mounted here: ") + std::strerror(errno);
  return reason;
}

bool SmallDisk::make_read_only() const {
  return mount(nullptr, path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

}  // namespace zortest
