// SPDX-License-Identifier: MIT
#include "ZORTavTypeEncap.h"

int GetTavrinSizeOf(ZORTavValue tag) {
  switch (tag) {
    case ZORTavValueInteger4:
    case ZORTavValueReal4:
    case ZORTavValueChar4:
      return 4;
    case ZORTavValueReal8:
    case ZORTavValueZORMathComplexf:
    // Of the pointers these two alone have a size: callers rely on the 0 of the others.
    case ZORTavValueInteger4Ptr:
    case ZORTavValueChar1Ptr:
      return 8;
    case ZORTavValueChar1:
      return 1;
    case ZORTavValueZORMathComplex:
      return 16;
    default:
      return 0;
  }
}
