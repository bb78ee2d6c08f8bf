// SPDX-License-Identifier: MIT
// A table of names in the order of an enumeration; the last name is the closing enumerator's and names no member.
#pragma once

#include <algorithm>
#include <cstddef>

#include "ZORStatus.h"
#include "ZORUnicodeString.h"

namespace zortav {

// 0 when the text is the name of a member, else E_FAIL.
template <std::size_t count>
int status_of_name(const ZORUnicodeString& text, const char* const (&names)[count]) {
  const char* const* members_end = names + count - 1;
  return std::any_of(names, members_end, [&](const char* name) { return text == name; }) ? 0 : E_FAIL;
}

}  // namespace zortav
