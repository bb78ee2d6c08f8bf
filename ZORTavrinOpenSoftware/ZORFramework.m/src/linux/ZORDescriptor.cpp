// SPDX-License-Identifier: MIT
#include "ZORDescriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

int32_t ZORGetOutputDescriptor() noexcept {
  return fileno(stdout);
}

int32_t ZORDuplicateDescriptor(int32_t descriptor) noexcept {
  return fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
}

int32_t ZORReplaceDescriptor(int32_t source, int32_t target) noexcept {
  return dup2(source, target) == target ? 0 : -1;
}

void ZORReleaseDescriptor(int32_t descriptor) noexcept {
  close(descriptor);
}
