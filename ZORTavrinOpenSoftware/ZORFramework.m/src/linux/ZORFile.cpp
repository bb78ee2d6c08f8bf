// SPDX-License-Identifier: MIT
#include "ZORFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "ZORDescriptor.h"
#include "system_status.h"

namespace {

constexpr mode_t everybody_may_read_and_write = 0666;  // less what the process's mask takes away

int32_t status_of(int result) {
  return result == 0 ? 0 : zortav::system_status(errno);
}

// Opens with a descriptor above those of the standard streams, which a later write to a closed stream must not find.
int open_file(const char* path, int flags, mode_t permissions) {
  const int lowest = open(path, flags | O_CLOEXEC, permissions);
  if (lowest < 0 || lowest > STDERR_FILENO) {
    return lowest;
  }
  const int descriptor = ZORDuplicateDescriptor(lowest);
  const int error = errno;
  close(lowest);
  errno = error;
  return descriptor;
}

// The flags of a mode such as "a+c"; -1 for one that is not valid.
int flags_of(const char* mode) {
  const bool plus = mode != nullptr && std::strchr(mode, '+') != nullptr;
  const int access = plus ? O_RDWR : mode != nullptr && *mode == 'r' ? O_RDONLY : O_WRONLY;
  if (mode == nullptr || *mode == '\0' || mode[1 + std::strspn(mode + 1, "+c")] != '\0') {
    return -1;
  }
  switch (*mode) {
    case 'r':
      return access;
    case 'w':
      return access | O_CREAT | O_TRUNC;
    case 'a':
      return access | O_CREAT | O_APPEND;
    default:
      return -1;
  }
}

// Returns 0, or the errno value of what went wrong.
int copy_contents(int from, int to) {
  char buffer[1 << 16];
  for (;;) {
    const ssize_t got = read(from, buffer, sizeof buffer);
    if (got == 0) {
      return 0;
    }
    if (got < 0 && errno != EINTR) {
      return errno;
    }
    for (ssize_t written = 0; written < got;) {
      const ssize_t more = write(to, buffer + written, static_cast<size_t>(got - written));
      if (more < 0 && errno != EINTR) {
        return errno;
      }
      written += more > 0 ? more : 0;
    }
  }
}

}  // namespace

int32_t ZORFileAccess(const ZORUnicodeString& path, int32_t mode, int32_t) noexcept {
  if ((mode & ~(ZORFileReadable | ZORFileWritable)) != 0) {
    return ZORStatusInvalidArgument;
  }
  const int readable = (mode & ZORFileReadable) != 0 ? R_OK : 0;
  const int writable = (mode & ZORFileWritable) != 0 ? W_OK : 0;
  return status_of(access(path.GetText(), F_OK | readable | writable));
}

int32_t ZORIdenticaleFile(const ZORUnicodeString& a, const ZORUnicodeString& b) noexcept {
  struct stat of_a {};
  struct stat of_b {};
  if (stat(a.GetText(), &of_a) != 0 || stat(b.GetText(), &of_b) != 0) {
    return zortav::system_status(errno);
  }
  return of_a.st_dev == of_b.st_dev && of_a.st_ino == of_b.st_ino ? 0 : 1;
}

int32_t ZORMakePath(const ZORUnicodeString& folder, const ZORUnicodeString& name, ZORUnicodeString& path) noexcept {
  if (name.IsEmpty()) {
    return ZORStatusInvalidArgument;
  }
  const bool complete = folder.IsEmpty() || folder.GetText()[folder.GetLength() - 1] == '/';
  path = folder + (complete ? "" : "/") + name;
  return 0;
}

int32_t ZORFOpen(const ZORUnicodeString& path, const char* mode, int32_t* descriptor) noexcept {
  *descriptor = -1;
  const int flags = flags_of(mode);
  if (flags < 0) {
    return ZORStatusInvalidArgument;
  }
  *descriptor = open_file(path.GetText(), flags, everybody_may_read_and_write);
  return *descriptor >= 0 ? 0 : zortav::system_status(errno);
}

int32_t ZORFClose(int32_t descriptor) noexcept {
  // Pipes and terminals have no disk to commit to.
  if (fdatasync(descriptor) != 0 && errno != EINVAL && errno != EROFS) {
    return zortav::system_status(errno);
  }
  // Linux closes the descriptor also where a signal interrupts.
  return close(descriptor) == 0 || errno == EINTR ? 0 : zortav::system_status(errno);
}

int32_t ZORFCopy(const ZORUnicodeString& from, const ZORUnicodeString& to, int32_t keep_target) noexcept {
  const int source = open_file(from.GetText(), O_RDONLY, 0);
  if (source < 0) {
    return zortav::system_status(errno);
  }
  struct stat of_source {};
  if (fstat(source, &of_source) != 0) {
    const int error = errno;
    close(source);
    return zortav::system_status(error);
  }
  struct stat of_target {};
  const bool onto_itself = stat(to.GetText(), &of_target) == 0 && of_source.st_dev == of_target.st_dev &&
                           of_source.st_ino == of_target.st_ino;
  errno = EEXIST;
  const int when_there = keep_target != 0 ? O_EXCL : O_TRUNC;
  const int target =
      onto_itself ? -1 : open_file(to.GetText(), O_WRONLY | O_CREAT | when_there, of_source.st_mode & ACCESSPERMS);
  int error = target < 0 ? errno : copy_contents(source, target);
  // A full disk may show only when the file is closed.
  if (target >= 0 && close(target) != 0 && error == 0) {
    error = errno;
  }
  close(source);
  if (target >= 0 && error != 0) {
    unlink(to.GetText());
  }
  return error == 0 ? 0 : zortav::system_status(error);
}

int32_t ZORDeleteFile(const ZORUnicodeString& path) noexcept {
  return status_of(unlink(path.GetText()));
}
