// SPDX-License-Identifier: MIT
#include "ZORTavTypeEncapError.h"

const ZORTavTypeEncapError ZORTavTypeEncapError::EmptyEncapEr;

ZORTavTypeEncapError::ZORTavTypeEncapError() = default;

ZORTavTypeEncapError::ZORTavTypeEncapError(int value) : ZORTavTypeEncap(value) {}

ZORTavTypeEncapError::ZORTavTypeEncapError(double value) : ZORTavTypeEncap(value) {}

ZORTavTypeEncapError::ZORTavTypeEncapError(const char* text) : ZORTavTypeEncap(text) {}

ZORTavTypeEncapError::ZORTavTypeEncapError(const ZORTavTypeEncapError& other) = default;

ZORTavTypeEncapError& ZORTavTypeEncapError::operator=(const ZORTavTypeEncapError& other) = default;

ZORTavTypeEncapError::~ZORTavTypeEncapError() = default;

void ZORTavTypeEncapError::AddParameterInList(ZORRawCollint& integers, ZORRawColldouble& reals,
                                              ZORListValZORUnicodeString& texts) const {
  if (IsEmpty()) {
    return;
  }
  switch (Tag) {
    case ZORTavValueInteger4:
      integers.Append(Value.Integer);
      break;
    case ZORTavValueReal8:
      reals.Append(Value.Real8);
      break;
    case ZORTavValueString:
      texts.Append(ZORUnicodeString(Value.Text));
      break;
    default:
      break;
  }
}
