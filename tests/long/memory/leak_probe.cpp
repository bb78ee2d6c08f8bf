// SPDX-License-Identifier: MIT
// A leak on purpose: tells whether the sanitizer would have seen one.
#include <cstdio>

int main() {
  char* volatile last = nullptr;
  for (int i = 0; i < 100; ++i) {
    last = new char[100];
    *last = static_cast<char>(i);
  }
  std::printf("the last one begins with %d\n", *last);
  return 0;
}
