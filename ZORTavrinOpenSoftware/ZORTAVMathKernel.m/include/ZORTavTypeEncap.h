/* SPDX-License-Identifier: MIT */
/* Typed handles: a value, or the address of a caller's array pointer, with the tag that tells which. */
#ifndef ZORTAV_TYPE_ENCAP_H
#define ZORTAV_TYPE_ENCAP_H

#include <stdint.h>

#include "ZORTavEnumerations.h"

/**
 * What the typed handles share. Handles are made as ZORTavTypeEncapError (parameters of a message) or
 * ZORTavTypeEncapMemory (arrays to be allocated).
 *
 * A handle owns the copy of its text; it does not own the pointer variable that it refers to, which must outlive it.
 * A text for which there is no memory ends the process with a fatal error.
 *
 * Threads: a handle is used by one thread at a time.
 */
class ZOR_EXPORT ZORTavTypeEncap {
 public:
  /** Releases the own text, takes over tag and value of the other, its text as a copy. */
  ZORTavTypeEncap& operator=(const ZORTavTypeEncap& other);

  /**
   * Whether no argument is given: true for a null text, for the two character tags and for the complex and unknown
   * ones; false for a number, a text, the empty one included, and a pointer.
   */
  bool IsEmpty() const;
  /** Does nothing. */
  void Dump() const;
  /** Does nothing. */
  void PrintValue() const;

 protected:
  /** Empty: ZORTavValueLast. */
  ZORTavTypeEncap();
  explicit ZORTavTypeEncap(int value);
  explicit ZORTavTypeEncap(float value);
  explicit ZORTavTypeEncap(double value);
  /** A copy of the zero-terminated text; null makes a handle that is empty. */
  explicit ZORTavTypeEncap(const char* text);
  /** The address of the caller's pointer variable. */
  explicit ZORTavTypeEncap(int*& pointer);
  explicit ZORTavTypeEncap(float*& pointer);
  explicit ZORTavTypeEncap(double*& pointer);
  explicit ZORTavTypeEncap(char*& pointer);
  explicit ZORTavTypeEncap(char**& pointer);
  ZORTavTypeEncap(const ZORTavTypeEncap& other);
  /** Releases the own text and leaves the handle empty. */
  ~ZORTavTypeEncap();

  union {
    int Integer;
    float Real4;
    double Real8;
    char* Text;      /**< owned */
    void* PointerAt; /**< the address of the caller's pointer variable */
    int64_t Slot;
  } Value;
  ZORTavValue Tag;
};

/**
 * What an array holds whose pointer has the given tag: Integer4Ptr gives Integer4, Real4Ptr Real4, Real8Ptr Real8,
 * Char1Ptr Char1, Char1PtrPtr Char1Ptr; anything else gives ZORTavValueLast. Threads: any.
 */
ZOR_EXPORT ZORTavValue GetPointedType(ZORTavValue tag);

/**
 * Bytes of a value with the given tag: Integer4, Real4 and Char4 4; Real8, Integer4Ptr, Char1Ptr and ZORMathComplexf 8;
 * Char1 1; ZORMathComplex 16; anything else, the other pointers included, 0. Threads: any.
 */
ZOR_EXPORT int GetTavrinSizeOf(ZORTavValue tag);

#endif
