// SPDX-License-Identifier: MIT
#include "ZORMemory.h"

#include <algorithm>
#include <cstdlib>

namespace {

ZORMemRefusal asked = nullptr;
void* asked_context = nullptr;

bool refused(size_t bytes) {
  return asked != nullptr && asked(asked_context, bytes);
}

// What realloc does with a size of 0 differs between C runtimes.
size_t at_least_one(size_t bytes) {
  return std::max<size_t>(bytes, 1);
}

}  // namespace

void* ZORUnsecuredMemAlloc(size_t bytes) noexcept {
  return refused(bytes) ? nullptr : std::malloc(at_least_one(bytes));
}

void* ZORUnsecuredMemRealloc(void* block, size_t bytes) noexcept {
  return refused(bytes) ? nullptr : std::realloc(block, at_least_one(bytes));
}

void ZORSetMemRefusal(ZORMemRefusal refusal, void* context) noexcept {
  asked = refusal;
  asked_context = context;
}
