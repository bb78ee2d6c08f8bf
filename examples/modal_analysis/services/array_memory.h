// SPDX-License-Identifier: MIT
// The large arrays of the program: all of them come from one memory manager of the library, one typed request each.
//
// An array that is given back while it is the latest takes its group, and the gaps left below it, off the manager's
// stack of groups; any other is released alone. The manager runs under its warning mode: an array above the allowed
// allocation (TAV_MAX_ALLOC), or not to be had, is refused with warning 300 in the listing.
//
// Threads: arrays are taken and given back by the main thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZORTavMemoryManager.h"

namespace modal {

// The manager refused an array; the text is one line that says of what size and why.
class ArrayRefused : public std::bad_alloc {
 public:
  explicit ArrayRefused(std::string text) : text_(std::move(text)) {}
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string text_;
};

class ArrayMemory {
 public:
  static ArrayMemory& instance();

  // An array of so many elements, count > 0, their values undetermined. Throws ArrayRefused.
  template <class T>
  T* take(std::size_t count) {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
    // The type of the request: what the manager knows of the same alignment, several a element where T is a record.
    using Unit = std::conditional_t<alignof(T) == alignof(double), double,
                                    std::conditional_t<alignof(T) == alignof(int), int, char>>;
    static_assert(alignof(T) == alignof(Unit) && sizeof(T) % sizeof(Unit) == 0);
    Unit* array = nullptr;
    const int group = request(ZORTavTypeEncapMemory(array), count, sizeof(T), sizeof(Unit));
    live_.push_back({array, group});
    return reinterpret_cast<T*>(array);
  }
  void give_back(const void* array) noexcept;

  // The most that was in use at any time.
  double peak_bytes() const;
  // Arrays not given back.
  std::size_t arrays() const { return live_.size(); }

 private:
  struct Live {
    const void* array;
    int group;
  };

  ArrayMemory();
  // Returns the group. There is room in live_ then.
  int request(const ZORTavTypeEncapMemory& handle, std::size_t count, std::size_t element, std::size_t unit);

  ZORTavMemoryManager manager_;
  std::vector<Live> live_;  // by group
};

// Lets the standard containers live on the manager's arrays. Elements made without a value are undetermined, as the
// manager hands them out: nothing is written to an array before its owner writes it.
template <class T>
struct ArrayAllocator {
  using value_type = T;
  using is_always_equal = std::true_type;

  ArrayAllocator() = default;
  template <class U>
  ArrayAllocator(const ArrayAllocator<U>& /*other*/) noexcept {}  // containers convert between element types

  T* allocate(std::size_t count) { return ArrayMemory::instance().take<T>(count); }
  void deallocate(T* array, std::size_t /*count*/) noexcept { ArrayMemory::instance().give_back(array); }
  template <class U>
  void construct(U* place) noexcept {
    ::new (static_cast<void*>(place)) U;
  }
  template <class U, class... Values>
  void construct(U* place, Values&&... values) {
    ::new (static_cast<void*>(place)) U(std::forward<Values>(values)...);
  }
  bool operator==(const ArrayAllocator& /*other*/) const noexcept { return true; }
};

// A large array. Array<T>(n) and resize(n) leave new elements undetermined; Array<T>(n, value) sets them.
template <class T>
using Array = std::vector<T, ArrayAllocator<T>>;

}  // namespace modal
