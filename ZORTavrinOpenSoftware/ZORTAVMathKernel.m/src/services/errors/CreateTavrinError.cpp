// SPDX-License-Identifier: MIT
#include "ZORTavErrorTools.h"

void CreateTavrinError(int id, const ZORTavTypeEncapError& p1, const ZORTavTypeEncapError& p2,
                       const ZORTavTypeEncapError& p3, const ZORTavTypeEncapError& p4, const ZORTavTypeEncapError& p5,
                       const ZORTavTypeEncapError& p6, const ZORTavTypeEncapError& p7, const ZORTavTypeEncapError& p8,
                       const ZORTavTypeEncapError& p9) {
  ZORTavErrorTools::Create(id, p1, p2, p3, p4, p5, p6, p7, p8, p9);
}
