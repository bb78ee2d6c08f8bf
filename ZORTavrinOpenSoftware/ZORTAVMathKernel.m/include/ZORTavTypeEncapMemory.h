/* SPDX-License-Identifier: MIT */
/* A typed handle for an array that the memory manager is to allocate. */
#ifndef ZORTAV_TYPE_ENCAP_MEMORY_H
#define ZORTAV_TYPE_ENCAP_MEMORY_H

#include "ZORTavTypeEncap.h"

/**
 * Refers to a caller's pointer variable, into which the memory manager writes the address of the array. Made from the
 * variable where the handle is asked for:
 *
 *   int* rows;  double* values;
 *   manager.Allocation(group, rows, 100, values, 1000);
 *
 * The variable is written when the request succeeds and not read.
 */
class ZOR_EXPORT ZORTavTypeEncapMemory : public ZORTavTypeEncap {
 public:
  /** Empty: no array. */
  ZORTavTypeEncapMemory();
  // Not explicit: a pointer variable stands for its handle.
  ZORTavTypeEncapMemory(int*& pointer);
  ZORTavTypeEncapMemory(float*& pointer);
  ZORTavTypeEncapMemory(double*& pointer);
  ZORTavTypeEncapMemory(char*& pointer);
  ZORTavTypeEncapMemory(char**& pointer);
  ZORTavTypeEncapMemory(const ZORTavTypeEncapMemory& other);
  using ZORTavTypeEncap::operator=;
  ZORTavTypeEncapMemory& operator=(const ZORTavTypeEncapMemory& other);
  ~ZORTavTypeEncapMemory();

  /** The address of the pointer variable, whatever it points to; null for an empty handle. */
  operator char**() const;

  /** Bytes of an element of the array: 4 for int and float, 8 for double and char*, 1 for char; 0 without an array. */
  int GetTavrinSizeOfPointedType() const;

  /**
   * Self-test of the memory manager: one request of six arrays of the five element types, which are filled and
   * released.
   *
   * @return the status of the request: 0 on success, 0x80004005 (negative) when there is no memory; the error is
   *         reported then.
   */
  static int Test();
};

#endif
