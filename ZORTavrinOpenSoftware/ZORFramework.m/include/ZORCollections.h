/* SPDX-License-Identifier: MIT */
/* The collections that carry the parameters of a message. */
#ifndef ZOR_COLLECTIONS_H
#define ZOR_COLLECTIONS_H

#include <stdint.h>

#include <vector>

#include "ZORRuntime.h"
#include "ZORUnicodeString.h"

/**
 * A growing sequence of values, counted from 1.
 *
 * When no memory is to be had for a value, the process ends through ZORFatalError; nothing throws.
 *
 * Threads: one object is changed by one thread at a time.
 */
template <class T>
class ZORSequence {
 public:
  ZORSequence() noexcept = default;
  ZORSequence(const ZORSequence& other) noexcept {
    for (const T& value : other.values_) {
      Append(value);
    }
  }
  ZORSequence(ZORSequence&& other) noexcept = default;
  ZORSequence& operator=(const ZORSequence& other) noexcept {
    values_ = ZORSequence(other).values_;
    return *this;
  }
  ZORSequence& operator=(ZORSequence&& other) noexcept = default;
  ~ZORSequence() = default;

  /** Adds a value at the end. */
  void Append(const T& value) noexcept {
    try {
      values_.push_back(value);
    } catch (...) {
      ZORFatalError("no memory for a value of a collection", __FILE__, __LINE__);
    }
  }
  /** The number of values. */
  int32_t Size() const noexcept { return static_cast<int32_t>(values_.size()); }
  /** Value number i, 1 to Size(); the null value (0, the empty text) for any other i. */
  T operator[](int32_t i) const noexcept {
    return i >= 1 && i <= Size() ? values_[static_cast<typename std::vector<T>::size_type>(i) - 1] : T();
  }
  /** Leaves the sequence empty. */
  void RemoveAll() noexcept { values_.clear(); }

 private:
  std::vector<T> values_;
};

class ZORRawCollint : public ZORSequence<int32_t> {};
class ZORRawColldouble : public ZORSequence<double> {};
class ZORListValZORUnicodeString : public ZORSequence<ZORUnicodeString> {};

#endif
