// SPDX-License-Identifier: MIT
// Writes to the listing, early and then where a program has all but ended: the library is loaded after a handler was
// registered and an object was made, so that its own objects are destroyed before these two have their turn.
//
// late_reporter LIBRARY early | late   SetTavTraces is called, and the log opened, right after the load or by the handler

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "test_system.h"

namespace {

void* library = nullptr;
bool set_late = false;

template <class Entry>
Entry* entry(const char* name) {
  void* const found = library != nullptr ? zortest::find_entry(library, name) : nullptr;
  if (found == nullptr) {
    std::fprintf(stderr, "no library, or no %s in it\n", name);
    std::_Exit(2);
  }
  return reinterpret_cast<Entry*>(found);
}

void report(const char* text) {
  const int32_t value = 7;
  const double real = 0.5;
  int32_t flag = 0;
  entry<void(const char*)>("ehprint")(text);
  entry<void(const char*, const int32_t*)>("ehprini")("value ", &value);
  entry<void(const char*, const double*)>("ehprinr")("real %4.2f", &real);
  const int32_t status =
      entry<int32_t(const int32_t*, const char*, int32_t*, int64_t)>("ehrprog")(&value, text, &flag, 0);
  if (status != 1 || flag != 1 || entry<int32_t()>("eyflsh")() != 0) {
    std::_Exit(3);
  }
}

void set_traces() {
  entry<void()>("SetTavTraces")();
}

void handler() {
  if (set_late) {
    set_traces();
  }
  report("handler");
}

const struct Last {
  ~Last() { report("last object"); }
} last;

}  // namespace

int main(int, char** argv) {
  std::atexit(handler);
  library = zortest::load_library(argv[1]);
  set_late = argv[2] == std::string("late");
  if (!set_late) {
    set_traces();
    report("main");
  }
  return 0;
}
