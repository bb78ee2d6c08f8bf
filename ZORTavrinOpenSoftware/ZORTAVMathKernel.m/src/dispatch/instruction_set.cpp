// SPDX-License-Identifier: MIT
// Detection follows the processor makers' manuals: a level counts only when CPUID reports every extension that its
// units are compiled for and XGETBV reports that the operating system saves the registers they use.
#include "dispatch/instruction_set.h"

#include <cpuid.h>

#include <cstdint>
#include <cstring>

#include "ZORSystem.h"
#include "ZORTAVInstructionSet.h"

namespace zortav {

namespace detail {
std::atomic<int> active_level{0};
}

namespace {

struct Cpuid {
  unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
};

Cpuid cpuid(unsigned leaf) {
  Cpuid r;
  __get_cpuid_count(leaf, 0, &r.eax, &r.ebx, &r.ecx, &r.edx);
  return r;
}

constexpr bool has_all(std::uint64_t word, std::uint64_t bits) {
  return (word & bits) == bits;
}

std::uint64_t saved_register_sets() {
  std::uint32_t low = 0;
  std::uint32_t high = 0;
  __asm__ volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return (static_cast<std::uint64_t>(high) << 32) | low;
}

InstructionSet highest_offered() {
  constexpr std::uint64_t avx2_in_leaf1 = bit_FMA | bit_F16C | bit_AVX | bit_OSXSAVE;
  constexpr std::uint64_t avx2_in_leaf7 = bit_AVX2 | bit_BMI | bit_BMI2;
  constexpr std::uint64_t avx512_in_leaf7 = bit_AVX512F | bit_AVX512CD | bit_AVX512BW | bit_AVX512DQ | bit_AVX512VL;
  constexpr std::uint64_t saves_ymm = 0x06;
  constexpr std::uint64_t saves_zmm = 0xE6;

  const Cpuid leaf1 = cpuid(1);
  const Cpuid leaf7 = cpuid(7);
  if (!has_all(leaf1.ecx, avx2_in_leaf1) || !has_all(leaf7.ebx, avx2_in_leaf7)) {
    return InstructionSet::sse4;
  }
  const std::uint64_t saved = saved_register_sets();
  if (!has_all(saved, saves_ymm)) {
    return InstructionSet::sse4;
  }
  if (!has_all(leaf7.ebx, avx512_in_leaf7) || !has_all(saved, saves_zmm)) {
    return InstructionSet::avx2;
  }
  return InstructionSet::avx512;
}

constexpr const char* level_names[instruction_set_count] = {"SSE4", "AVX2", "AVX512"};

struct Choice {
  int highest;
  int reason;
};

Choice choice{0, ZORTavInstructionSetReasonMachine};

void choose_at_load() {
  choice.highest = static_cast<int>(highest_offered());
  int active = choice.highest;
  if (const char* wanted = ZORGetEnv("TAV_INSTRUCTION_SET")) {
    choice.reason = ZORTavInstructionSetReasonUnknownName;
    for (int level = 0; level < instruction_set_count; ++level) {
      if (std::strcmp(wanted, level_names[level]) == 0) {
        const bool offered = level <= choice.highest;
        active = offered ? level : choice.highest;
        choice.reason = offered ? ZORTavInstructionSetReasonEnvironment : ZORTavInstructionSetReasonNotOffered;
      }
    }
  }
  detail::active_level.store(active, std::memory_order_relaxed);
}

[[maybe_unused]] const bool chosen_at_load = (choose_at_load(), true);

}  // namespace
}  // namespace zortav

extern "C" {

void ehgetisa(int32_t* active, int32_t* highest, int32_t* reason) {
  *active = static_cast<int32_t>(zortav::active_instruction_set());
  *highest = zortav::choice.highest;
  *reason = zortav::choice.reason;
}

void ehsetisa(const int32_t* level, int32_t* status) {
  if (*level < 0 || *level > zortav::choice.highest) {
    *status = 1;
    return;
  }
  zortav::detail::active_level.store(*level, std::memory_order_relaxed);
  zortav::choice.reason = ZORTavInstructionSetReasonCall;
  *status = 0;
}

const char* ehisanm(const int32_t* level) {
  return *level >= 0 && *level < zortav::instruction_set_count ? zortav::level_names[*level] : "?";
}

}  // extern "C"
