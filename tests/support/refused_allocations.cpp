// SPDX-License-Identifier: MIT
// Apart from what uses it: a compiler that sees both finds new and free mismatched.
#include "support/refused_allocations.h"

#include <cstdlib>
#include <new>

namespace zortest {

int allocations_left = -1;
int refusals_left = 0;
bool throwing_ones_fail_too = false;

}  // namespace zortest

using zortest::allocations_left;
using zortest::refusals_left;

namespace {

void* allocate(std::size_t size) noexcept {
  if (allocations_left == 0 && refusals_left > 0) {
    --refusals_left;
    return nullptr;
  }
  allocations_left -= allocations_left > 0 ? 1 : 0;
  return std::malloc(size);
}

}  // namespace

void* operator new(std::size_t size) {
  void* memory = zortest::throwing_ones_fail_too ? allocate(size) : std::malloc(size);
  return memory != nullptr ? memory : throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept {
  return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
