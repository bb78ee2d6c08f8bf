/* SPDX-License-Identifier: MIT */
/* Which instruction-set level the inner loops run at, why, and how to force a lower one.
 *
 * The inner loops of the library exist once per level: SSE4.2 (the floor), AVX2 with FMA, AVX-512 (F, CD, BW, DQ,
 * VL). When the library is loaded it takes the highest level whose every instruction the processor and the operating
 * system offer. The environment variable "TAV_INSTRUCTION_SET", read once at load, may name a lower one: "SSE4",
 * "AVX2" or "AVX512". */
#ifndef ZORTAV_INSTRUCTION_SET_H
#define ZORTAV_INSTRUCTION_SET_H

#include "ZORTAVEntryPoint.h"

enum ZORTavInstructionSet {
  ZORTavInstructionSetSse4 = 0,
  ZORTavInstructionSetAvx2 = 1,
  ZORTavInstructionSetAvx512 = 2
};

enum ZORTavInstructionSetReason {
  /** The highest level that the machine offers. */
  ZORTavInstructionSetReasonMachine = 0,
  /** Lowered by "TAV_INSTRUCTION_SET". */
  ZORTavInstructionSetReasonEnvironment = 1,
  /** Chosen by a call of ehsetisa. */
  ZORTavInstructionSetReasonCall = 2,
  /** "TAV_INSTRUCTION_SET" asked for more than the machine offers: the highest level is used. */
  ZORTavInstructionSetReasonNotOffered = 3,
  /** "TAV_INSTRUCTION_SET" holds no level's name and was ignored. */
  ZORTavInstructionSetReasonUnknownName = 4
};

/**
 * Tells which instruction-set level is active, and why.
 *
 * @param active  [out] the level in use, a ZORTavInstructionSet.
 * @param highest [out] the highest level that this machine offers, a ZORTavInstructionSet.
 * @param reason  [out] a ZORTavInstructionSetReason.
 *
 * Threads: may be called from any thread.
 */
ZORTAV_ENTRY void ehgetisa(int32_t* active, int32_t* highest, int32_t* reason);

/**
 * Chooses the instruction-set level for all later calls of the process.
 *
 * @param level  [in] a ZORTavInstructionSet.
 * @param status [out] 0 when the level is now in use; 1 when it is not a level or the machine does not offer it, and
 *               then nothing changes.
 *
 * Threads: call it while no numerical routine of the library runs on another thread.
 */
ZORTAV_ENTRY void ehsetisa(const int32_t* level, int32_t* status);

/**
 * The name of a level: "SSE4", "AVX2" or "AVX512", the texts that "TAV_INSTRUCTION_SET" takes.
 *
 * @param level [in] a ZORTavInstructionSet.
 * @return a static zero-terminated text; "?" for a number that is no level.
 *
 * Threads: may be called from any thread.
 */
ZORTAV_ENTRY const char* ehisanm(const int32_t* level);

#endif
