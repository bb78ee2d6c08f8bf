// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <iterator>

namespace zortav {

// A catalog file whose bytes the build has put into the library.
struct CompiledCatalog {
  const char* name;
  const char* language;
  const unsigned char* bytes;
  std::size_t size;
};

const CompiledCatalog* compiled_catalogs(std::size_t* count) noexcept;

}  // namespace zortav
