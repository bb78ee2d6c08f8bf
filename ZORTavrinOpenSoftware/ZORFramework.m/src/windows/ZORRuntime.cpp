// SPDX-License-Identifier: MIT
#include "ZORRuntime.h"

#include <omp.h>
#include <windows.h>
#include <xmmintrin.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr DWORD longest_wait_for_flush = 1000;  // milliseconds

DWORD WINAPI flush_everything(void*) {
  std::fflush(nullptr);
  return 0;
}

}  // namespace

void ZORRuntimeStop(const char* text) {
  // In one piece: several threads may stop at once.
  std::fprintf(stderr, "%s\n", text);
  std::fflush(stderr);
  std::fflush(stdout);
  // A thread that waits for input holds the lock of its stream for as long as it waits; the flush of all streams may
  // wait for it, the stop must not.
  if (const HANDLE flush = CreateThread(nullptr, 0, flush_everything, nullptr, 0, nullptr)) {
    WaitForSingleObject(flush, longest_wait_for_flush);
  }
  // An orderly exit would run destructors while other threads hold what they need; a stop leaves nothing to tidy.
  TerminateProcess(GetCurrentProcess(), EXIT_FAILURE);
  std::abort();
}

void ZORRuntimeWriteRecord(const char* text, int number) {
  std::printf(" %s %11d\n", text, number);
  std::fflush(stdout);
}

void ZORRuntimeSetExceptionMode(int mode) {
  if (mode != 0) {
    return;
  }
  constexpr unsigned vector_unit_masks = 0x1F80;
  constexpr std::uint16_t stack_unit_masks = 0x3F;
  _mm_setcsr(_mm_getcsr() | vector_unit_masks);
  std::uint16_t control = 0;
  __asm__ volatile("fnstcw %0" : "=m"(control));
  control = static_cast<std::uint16_t>(control | stack_unit_masks);
  __asm__ volatile("fldcw %0" : : "m"(control));
}

void ZORRuntimeFollowThreadCount(int32_t threads) {
  // The runtime in the library is the library's own: no call of the program reaches it.
  if (threads > 0) {
    omp_set_num_threads(threads);
  }
}
