/* SPDX-License-Identifier: MIT */
/* A typed handle for a parameter of a message. */
#ifndef ZORTAV_TYPE_ENCAP_ERROR_H
#define ZORTAV_TYPE_ENCAP_ERROR_H

#include "ZORCollections.h"
#include "ZORTavTypeEncap.h"

/** An integer, a real or a text that a message shows, or nothing. Made from the value where a parameter is asked for.
 */
class ZOR_EXPORT ZORTavTypeEncapError : public ZORTavTypeEncap {
 public:
  /** Empty: the parameter is skipped. */
  ZORTavTypeEncapError();
  // Not explicit: a value stands for its handle.
  ZORTavTypeEncapError(int value);
  ZORTavTypeEncapError(double value);
  /** Copies the zero-terminated text; null counts as empty. */
  ZORTavTypeEncapError(const char* text);
  ZORTavTypeEncapError(const ZORTavTypeEncapError& other);
  using ZORTavTypeEncap::operator=;
  ZORTavTypeEncapError& operator=(const ZORTavTypeEncapError& other);
  ~ZORTavTypeEncapError();

  /**
   * Appends the parameter to the list of its kind; an empty parameter and one of another kind is appended to none.
   *
   * @param integers, reals, texts [in,out] the lists.
   */
  void AddParameterInList(ZORRawCollint& integers, ZORRawColldouble& reals, ZORListValZORUnicodeString& texts) const;

  /** Empty; the default of every optional parameter. */
  static const ZORTavTypeEncapError EmptyEncapEr;
};

#endif
