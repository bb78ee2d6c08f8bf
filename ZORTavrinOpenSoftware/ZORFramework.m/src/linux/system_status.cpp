// SPDX-License-Identifier: MIT
#include "system_status.h"

#include <cerrno>

#include "ZORStatus.h"

namespace {

// The causes' numbers are the same on every platform, and file statuses are compared across them.
std::uint32_t cause_of(int error) {
  switch (error) {
    case ENOENT:
      return ZORCauseFileNotFound;
    case ENOTDIR:
      return ZORCausePathNotFound;
    case EMFILE:
    case ENFILE:
      return 4;  // too many open files
    case EACCES:
    case EPERM:
    case EISDIR:
      return ZORCauseAccessDenied;
    case EBADF:
      return 6;  // invalid handle
    case ENOMEM:
      return 8;  // not enough memory
    case EROFS:
      return 19;  // write protected
    case EEXIST:
      return ZORStatusCause(ZORStatusFileExists);
    case EINVAL:
      return ZORStatusCause(ZORStatusInvalidArgument);
    case ENOSPC:
    case EDQUOT:
      return 112;  // disk full
    case ENAMETOOLONG:
      return 206;  // name too long
    default:
      return 31;  // a device does not work
  }
}

}  // namespace

std::int32_t zortav::system_status(int error) noexcept {
  return static_cast<std::int32_t>(ZORSystemFailure | cause_of(error));
}
