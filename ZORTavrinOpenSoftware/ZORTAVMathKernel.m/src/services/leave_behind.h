// SPDX-License-Identifier: MIT
// What a destructor writes into its own object is dead to the compiler, which leaves it out. Where stale references are
// meant to find an emptied object, the write must be made to happen.
#pragma once

namespace zortav {

template <class T>
void leave_behind(T& field, T value) {
  *static_cast<volatile T*>(&field) = value;
}

}  // namespace zortav
