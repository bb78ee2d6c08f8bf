// SPDX-License-Identifier: MIT
// Prints a message of a catalog that only files hold.
#include <cstdio>

#include "ZORResourceError.h"

int main() {
  std::puts(ZORResourceError("ERR_0007", "Own").GetNLSMessage().GetText());
}
