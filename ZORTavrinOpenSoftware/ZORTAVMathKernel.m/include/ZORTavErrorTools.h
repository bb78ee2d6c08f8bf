/* SPDX-License-Identifier: MIT */
/* Raising errors and warnings, the way most callers do it. */
#ifndef ZORTAV_ERROR_TOOLS_H
#define ZORTAV_ERROR_TOOLS_H

#include "ZORTavTypeEncapError.h"

/**
 * Reports a message of a catalog in one call:
 *
 *   ZORTavErrorTools::CreateError(302, "ZORTAVMathKernelError", requested, available);
 *
 * What holds for all of them:
 *
 * @param id      [in] number of the message.
 * @param catalog [in] zero-terminated name of the catalog.
 * @param p1      [in] ... @param p9 [in] parameters: an int, a double or a zero-terminated text each. In the message
 *                the integers are parameters 1 to 10, the reals 11 to 20 and the texts 21 to 25, each kind in the order
 *                given; those that are not given are skipped and leave no gap. Texts beyond the fifth are left out.
 *
 * Whether it becomes an error, a warning or an information is decided by what the catalog holds under the number, in
 * this order (ZORTavError.h describes the report). The caller goes on and returns its own status.
 *
 * Threads: errors are raised from one thread.
 */
class ZOR_EXPORT ZORTavErrorTools {
 public:
  /** Reports message `id` of the catalog "ZORTavrinError". */
  static void Create(int id, const ZORTavTypeEncapError& p1 = ZORTavTypeEncapError::EmptyEncapEr,
                     const ZORTavTypeEncapError& p2 = ZORTavTypeEncapError::EmptyEncapEr,
                     const ZORTavTypeEncapError& p3 = ZORTavTypeEncapError::EmptyEncapEr,
                     const ZORTavTypeEncapError& p4 = ZORTavTypeEncapError::EmptyEncapEr,
                     const ZORTavTypeEncapError& p5 = ZORTavTypeEncapError::EmptyEncapEr,
                     const ZORTavTypeEncapError& p6 = ZORTavTypeEncapError::EmptyEncapEr,
                     const ZORTavTypeEncapError& p7 = ZORTavTypeEncapError::EmptyEncapEr,
                     const ZORTavTypeEncapError& p8 = ZORTavTypeEncapError::EmptyEncapEr,
                     const ZORTavTypeEncapError& p9 = ZORTavTypeEncapError::EmptyEncapEr);
  /** Reports an internal error with the text; null is the empty text. */
  static void Create(const char* text);
  static void CreateError(int id, const char* catalog,
                          const ZORTavTypeEncapError& p1 = ZORTavTypeEncapError::EmptyEncapEr,
                          const ZORTavTypeEncapError& p2 = ZORTavTypeEncapError::EmptyEncapEr,
                          const ZORTavTypeEncapError& p3 = ZORTavTypeEncapError::EmptyEncapEr,
                          const ZORTavTypeEncapError& p4 = ZORTavTypeEncapError::EmptyEncapEr,
                          const ZORTavTypeEncapError& p5 = ZORTavTypeEncapError::EmptyEncapEr,
                          const ZORTavTypeEncapError& p6 = ZORTavTypeEncapError::EmptyEncapEr,
                          const ZORTavTypeEncapError& p7 = ZORTavTypeEncapError::EmptyEncapEr,
                          const ZORTavTypeEncapError& p8 = ZORTavTypeEncapError::EmptyEncapEr,
                          const ZORTavTypeEncapError& p9 = ZORTavTypeEncapError::EmptyEncapEr);
  /** As CreateError: the catalog decides whether it is a warning. */
  static void CreateWarning(int id, const char* catalog,
                            const ZORTavTypeEncapError& p1 = ZORTavTypeEncapError::EmptyEncapEr,
                            const ZORTavTypeEncapError& p2 = ZORTavTypeEncapError::EmptyEncapEr,
                            const ZORTavTypeEncapError& p3 = ZORTavTypeEncapError::EmptyEncapEr,
                            const ZORTavTypeEncapError& p4 = ZORTavTypeEncapError::EmptyEncapEr,
                            const ZORTavTypeEncapError& p5 = ZORTavTypeEncapError::EmptyEncapEr,
                            const ZORTavTypeEncapError& p6 = ZORTavTypeEncapError::EmptyEncapEr,
                            const ZORTavTypeEncapError& p7 = ZORTavTypeEncapError::EmptyEncapEr,
                            const ZORTavTypeEncapError& p8 = ZORTavTypeEncapError::EmptyEncapEr,
                            const ZORTavTypeEncapError& p9 = ZORTavTypeEncapError::EmptyEncapEr);
};

/** As ZORTavErrorTools::Create with the same arguments. */
ZOR_EXPORT void CreateTavrinError(int id, const ZORTavTypeEncapError& p1 = ZORTavTypeEncapError::EmptyEncapEr,
                                  const ZORTavTypeEncapError& p2 = ZORTavTypeEncapError::EmptyEncapEr,
                                  const ZORTavTypeEncapError& p3 = ZORTavTypeEncapError::EmptyEncapEr,
                                  const ZORTavTypeEncapError& p4 = ZORTavTypeEncapError::EmptyEncapEr,
                                  const ZORTavTypeEncapError& p5 = ZORTavTypeEncapError::EmptyEncapEr,
                                  const ZORTavTypeEncapError& p6 = ZORTavTypeEncapError::EmptyEncapEr,
                                  const ZORTavTypeEncapError& p7 = ZORTavTypeEncapError::EmptyEncapEr,
                                  const ZORTavTypeEncapError& p8 = ZORTavTypeEncapError::EmptyEncapEr,
                                  const ZORTavTypeEncapError& p9 = ZORTavTypeEncapError::EmptyEncapEr);

#endif
