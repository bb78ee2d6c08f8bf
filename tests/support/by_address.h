// SPDX-License-Identifier: MIT
// Calls of the plain entries as other languages make them: everything by its address, hidden lengths behind the rest.
#pragma once

#include <cstdint>
#include <type_traits>

namespace zortest {

struct HiddenLength {};

// Of the first element of an array, of a number itself.
template <class T>
auto address(T& argument) {
  if constexpr (std::is_same_v<std::remove_const_t<T>, HiddenLength>) {
    return std::int64_t{1};
  } else if constexpr (requires { argument.data(); }) {
    return argument.data();
  } else if constexpr (std::is_array_v<T> || std::is_null_pointer_v<T>) {
    return argument;
  } else {
    return &argument;
  }
}

// entry(address of each argument); as many lengths of one character as the entry wants more.
template <class Entry, class... Arguments>
auto by_address(Entry&& entry, Arguments&&... arguments) {
  static_assert(sizeof...(Arguments) < 20, "the entry does not take these arguments");
  if constexpr (std::is_invocable_v<Entry, decltype(address(arguments))...>) {
    return entry(address(arguments)...);
  } else {
    return by_address(entry, arguments..., HiddenLength());
  }
}

}  // namespace zortest
