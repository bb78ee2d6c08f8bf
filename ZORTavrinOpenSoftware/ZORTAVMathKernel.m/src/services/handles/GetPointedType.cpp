// SPDX-License-Identifier: MIT
#include "ZORTavTypeEncap.h"

ZORTavValue GetPointedType(ZORTavValue tag) {
  switch (tag) {
    case ZORTavValueInteger4Ptr:
      return ZORTavValueInteger4;
    case ZORTavValueReal4Ptr:
      return ZORTavValueReal4;
    case ZORTavValueReal8Ptr:
      return ZORTavValueReal8;
    case ZORTavValueChar1Ptr:
      return ZORTavValueChar1;
    case ZORTavValueChar1PtrPtr:
      return ZORTavValueChar1Ptr;
    default:
      return ZORTavValueLast;
  }
}
